// gaengine import rqtl FILE.csv -o OUT.map: an R/qtl csv cross file becomes a MAP input file.
// The written file is read back by the library's own MAP reader before the command says "ok".
#include <cctype>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "vocabulary/message_code.h"
#include "vocabulary/population.h"
#include "frame/tool_profile.h"
#include "import_rqtl.h"
#include "import_vcf.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "library_output.h"
#include "prep/map_input_text.h"
#include "user_errors.h"

namespace gaecli {

namespace {

struct ImportOptions {
  std::string file, out, pop;
  std::vector<std::string> genotypes{"A", "H", "B", "D", "C"};
  bool anchors = false;
  int mapping_function = 1;
};

// A population type by number or by the library's name for it ("F2", "RIL", "P1BC1F1").
int PopulationTypeNamed(const std::string& text) { return gae::PopulationTypeNamed(gae::kBiparentalDesign, text); }

std::string DefaultOutput(const std::string& file) {
  const std::size_t dot = file.rfind('.');
  return (dot == std::string::npos || file.find('/', dot) != std::string::npos ? file : file.substr(0, dot)) + ".map";
}

int RunImport(ImportOptions o) {
  const int type = PopulationTypeNamed(o.pop);
  if (type == 0) {
    std::fprintf(stderr, "--pop: '%s' is no bi-parental population type (1 to 20, or a name such as F2 or RIL)\n",
                 o.pop.c_str());
    return 2;
  }
  if (o.out.empty()) o.out = DefaultOutput(o.file);
  if (const std::string problem = InputNameProblem(o.out); !problem.empty()) {
    std::fprintf(stderr, "-o: %s\n", problem.c_str());
    return 2;
  }
  std::ifstream in(o.file, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "%s: cannot be read\n", o.file.c_str());
    return 1;
  }
  std::stringstream text;
  text << in.rdbuf();
  RqtlCross cross;
  std::string error;
  const RqtlCodes codes{o.genotypes[0], o.genotypes[1], o.genotypes[2], o.genotypes[3], o.genotypes[4]};
  if (!ParseRqtlCsv(text.str(), o.file, codes, cross, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  gae::MapInputRecord record;
  record.population_type = type;
  record.mapping_function = o.mapping_function;
  record.population_size = cross.individuals;
  record.names = cross.names;
  record.letters = cross.letters;
  record.categories.assign(cross.names.size(), 1);
  record.anchors = RqtlAnchors(cross, o.anchors && cross.has_map);
  std::ofstream os(o.out, std::ios::binary);
  os << gae::MapInputText(record);
  if (!os.flush()) {
    std::fprintf(stderr, "%s: cannot be written%s\n", o.out.c_str(),
                 FolderProblem(o.out).empty() ? "" : (": " + FolderProblem(o.out)).c_str());
    return 1;
  }
  os.close();
  // The MAP reader decides whether the population can show these genotypes.
  int status = 0;
  {
    const LibraryOutput quiet;
    gae::InputFile written;
    gae::MapToolInput input;
    if (written.Open(o.out)) gae::ReadMapToolInput(written, gae::ProfileOf(gae::MapTool::kMAP).tool_code, input);
    status = gae::MessageCode();
    gae::MessageCode() = 0;
  }
  if (status != 0) {
    ExplainRefusal(o.out, gae::ProfileOf(gae::MapTool::kMAP).tool_code, status);
    return 1;
  }
  std::printf("%s: %zu markers, %d individuals -> %s (%s, type %d)\n", o.file.c_str(), cross.names.size(),
              cross.individuals, o.out.c_str(), std::string(gae::PopulationName(gae::kBiparentalDesign, type)).c_str(),
              type);
  if (o.anchors && !cross.has_map) std::printf("  no map row in %s: no anchors written\n", o.file.c_str());
  if (o.anchors && cross.has_map) {
    std::printf("  anchors by chromosome:");
    const std::vector<int> anchors = RqtlAnchors(cross, true);
    for (std::size_t m = 0; m < anchors.size(); ++m)
      if (m == 0 || anchors[m] > anchors[m - 1]) std::printf(" %s=%d", cross.chromosomes[m].c_str(), anchors[m]);
    std::printf("\n");
  }
  return 0;
}

}  // namespace

void RegisterImportCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("import", "Write a map tool's input file from data kept in another program's format");
  cmd->require_subcommand(1);
  auto* rqtl = cmd->add_subcommand("rqtl", "An R/qtl csv cross file (read.cross format \"csv\") to a MAP input file");
  static ImportOptions o;
  rqtl->add_option("file", o.file, "R/qtl csv file")->required();
  rqtl->add_option("-o,--output", o.out, "MAP input file to write (default: FILE with .map)");
  rqtl->add_option("--pop", o.pop, "Population type: 1 to 20 or its name (F2, RIL, P1BC1F1, ...)")->required();
  rqtl->add_option("--genotypes", o.genotypes,
                   "The file's five genotype codes, as R/qtl's genotypes option: AA, AB, BB, not BB, not AA")
      ->expected(5)
      ->capture_default_str();
  rqtl->add_flag("--anchors", o.anchors, "Anchor each marker to its chromosome (needs the file's map row)");
  rqtl->add_option("--mapping-function", o.mapping_function, "1 Kosambi, 2 Haldane, 3 Morgan")
      ->check(CLI::Range(1, 3))
      ->capture_default_str();
  rqtl->callback([&exit_code] { exit_code = RunImport(o); });
  RegisterImportVcf(*cmd, exit_code);
}

}  // namespace gaecli
