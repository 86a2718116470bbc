// gaengine snp FILE -o OUT: SNP calls of parents and progeny to the input file of a map tool.
// The file's parents' section tells the design (--tool-code may only confirm it); the library's
// check validates the file and logs to SNP.log; the same conversion then gives the letters that
// the written file carries.
#include <cctype>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "run_guard.h"
#include "commands.h"
#include "library_output.h"
#include "user_errors.h"
#include "gaengine.h"
#include "input/list_reader.h"
#include "prep/map_input_text.h"
#include "vocabulary/path_stem.h"
#include "frame/tool_profile.h"
#include "prep/snp_calls.h"
#include "prep/snp_conversion.h"
#include "prep/snp_design.h"
#include "prep/snp_reader.h"
#include "report/text_file.h"

namespace gaecli {

namespace {

// The map tool whose input file the calls become, by how the parents' calls are read.
const gae::ToolProfile& TargetTool(int tool_code) {
  switch (gae::SnpMode(tool_code)) {
    case gae::kClonalMode: return gae::ProfileOf(gae::MapTool::kCDM);
    case gae::kFounderMode: return gae::ProfileOf(gae::MapTool::kPLM);
    default: return gae::ProfileOf(gae::MapTool::kMAP);
  }
}

// A map tool's input file is known by the tool's letters: .map, .cdm, .plm.
std::string DefaultOutput(const std::string& file, int tool_code) {
  std::string extension = "." + std::string(TargetTool(tool_code).letters);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return gae::PathStem(file) + extension;
}

int Fail(const std::string& file, int status) {
  ExplainRefusal(file, 0, status);
  return 1;
}

// `requested`: the --tool-code given, or 0.
int RunSnp(const std::string& file, std::string out, int requested) {
  const PathArg path(file);
  int num_markers = 0, status = 0;
  std::optional<LibraryOutput> quiet(std::in_place);
  const gae::SnpDesignChoice design = gae::ChooseSnpDesign(file, requested == 0 ? 0 : gae::SnpMode(requested));
  if (design.mode == 0 && design.num_parents > 0) {
    quiet.reset();
    std::fprintf(stderr, "%s: refused: %s\n", file.c_str(), design.why.c_str());
    return 1;
  }
  // A file whose parents cannot be counted goes to the check, which says what is wrong with it.
  const int tool_code = design.mode == 0 || design.mode == gae::kTwoParentMode
                            ? (requested != 0 ? requested : kBiparentalRowsCode)
                            : design.mode;
  SNPFindNumMarkers(tool_code, path.Len(), path.Data(), &num_markers, &status);
  if (status != 0) return quiet.reset(), Fail(file, status);
  if (!DeclaredSizeFits(file, num_markers, "markers")) return 1;
  std::vector<int> names(static_cast<std::size_t>(num_markers) * 35), anchors(num_markers),
      codes(num_markers);
  CheckErrorSNP(tool_code, path.Len(), path.Data(), num_markers, names.data(), anchors.data(),
                codes.data(), &status);
  quiet.reset();
  if (status != 0) return Fail(file, status);

  gae::InputFile in;
  if (!in.Open(file)) return Fail(file, 1002);
  gae::SnpInput input;
  gae::ReadSnpInput(in, tool_code, input);
  const gae::SnpConversion conversion = gae::ConvertSnpInput(input);

  gae::MapInputRecord record;
  record.tool_code = tool_code;
  record.population_type = input.population_type;
  record.mapping_function = input.mapping_function;
  record.space_type = input.space_type;
  record.population_size = input.population_size;
  for (std::size_t m = 0; m < conversion.markers.size(); ++m) {
    const gae::SnpMarkerResult& r = conversion.markers[m];
    if (r.code == 0) continue;  // flagged for deletion
    record.names.push_back(input.names[m]);
    record.categories.push_back(r.code);
    record.letters.push_back(r.letters);
    record.anchors.push_back(input.anchors[m]);
  }
  if (out.empty()) out = DefaultOutput(file, tool_code);
  if (!gae::WriteTextFile(out, gae::MapInputText(record))) {
    std::fprintf(stderr, "%s: cannot be written\n", out.c_str());
    return 1;
  }
  std::printf("%s: %s\n", file.c_str(), design.why.c_str());
  std::printf("%s: %d markers read, %zu kept, %zu deleted\n", file.c_str(), num_markers,
              record.names.size(), static_cast<std::size_t>(num_markers) - record.names.size());
  std::printf("%s input file written: %s\n", std::string(TargetTool(tool_code).letters).c_str(), out.c_str());
  return 0;
}

}  // namespace

void RegisterSnpCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("snp", "Convert SNP calls of parents and progeny to a map tool's input file");
  static std::string file, out;
  static int tool_code = 0;
  cmd->add_option("file", file, "SNP input file")->required();
  cmd->add_option("-o,--output", out, "Input file to write (default: FILE less its extension, .map/.cdm/.plm)");
  cmd->add_option("--tool-code", tool_code,
                  "Design: " + DesignCodesHelp() +
                      ". The parents per marker tell it (2 MAP, 4 CDM or four-way PLM, 8 eight-way PLM); "
                      "a code they contradict is refused");
  cmd->callback([&exit_code] { exit_code = RunSnp(file, out, tool_code); });
}

}  // namespace gaecli
