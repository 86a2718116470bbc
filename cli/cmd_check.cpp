// gaengine check TOOL FILE: validate the input file of a QTL or analysis tool, or read the
// sizes of a consensus-map or genomic-prediction file, and say "ok" or why not.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "run_guard.h"
#include "commands.h"
#include "gaengine.h"
#include "library_output.h"
#include "user_errors.h"

namespace gaecli {

namespace {

using CheckExport = void (*)(int, const char*, int*);

struct CheckTool {
  const char* name;
  CheckExport check;  // null for CMP and GSP, which have entries of their own shape
};

const CheckTool kTools[] = {
    {"BIP", CheckErrorBIP}, {"SDL", CheckErrorSDL}, {"MET", CheckErrorMET},
    {"NAM", CheckErrorNAM}, {"PLQ", CheckErrorPLQ}, {"CDQ", CheckErrorCDQ},
    {"CSL", CheckErrorCSL}, {"AOV", CheckErrorAOV}, {"CMP", nullptr},
    {"GSP", nullptr},
};

// The status of the check and, on success, a short account of what was read.
int CheckConsensus(const PathArg& path, std::string& summary) {
  int space_type = 0, space_unit = 0, num_chs = 0, num_markers = 0, status = 0;
  CMPFindNumMarkers(path.Len(), path.Data(), &space_type, &space_unit, &num_chs, &num_markers,
                    &status);
  summary = std::to_string(num_chs) + " maps, " + std::to_string(num_markers) + " distinct markers";
  return status;
}

// The genomic-prediction entries have a logical flag and no log: 1 stands for any failure.
int CheckPrediction(const PathArg& path, std::string& summary) {
  int num_traits = 0, flag = 0;
  GSPFindNumTraits(path.Len(), path.Data(), &num_traits, &flag);
  if ((flag & 1) != 0) return 1;
  if (!DeclaredSizeFits(path.text, num_traits, "traits")) return 1;
  std::vector<int> codes(static_cast<std::size_t>(num_traits) * 19, ' ');
  int training = 0;
  GSPFindTraitName(path.Len(), path.Data(), num_traits, codes.data(), &training, &flag);
  if ((flag & 1) != 0) return 1;
  summary = std::to_string(training) + " training lines, traits:";
  for (int i = 0; i < num_traits; ++i) {
    std::string name;
    for (int j = 0; j < 19; ++j) name += static_cast<char>(codes[static_cast<std::size_t>(j) * num_traits + i]);
    name.erase(name.find_last_not_of(' ') + 1);
    summary += " " + name;
  }
  return 0;
}

}  // namespace

void RegisterCheckCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("check", "Check the input file of a QTL or analysis tool");
  static std::string tool;
  static std::string file;
  std::vector<std::string> names;
  for (const CheckTool& t : kTools) names.emplace_back(t.name);
  cmd->add_option("tool", tool, "BIP, SDL, MET, NAM, PLQ, CDQ, CSL, AOV, CMP or GSP")
      ->required()
      ->transform(CLI::IsMember(names, CLI::ignore_case));
  cmd->add_option("file", file, "Input file")->required();
  cmd->callback([&exit_code] {
    std::string upper = tool;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const PathArg path(file);
    std::string summary;
    int status = 0;
    std::optional<LibraryOutput> quiet(std::in_place);
    if (upper == "CMP") {
      status = CheckConsensus(path, summary);
    } else if (upper == "GSP") {
      status = CheckPrediction(path, summary);
    } else {
      for (const CheckTool& t : kTools) {
        if (upper == t.name) t.check(path.Len(), path.Data(), &status);
      }
    }
    quiet.reset();
    if (status != 0) {
      if (upper != "GSP") ExplainRefusal(file, 0, status);
      else std::fprintf(stderr, "%s: not a valid GSP file (gaengine -v check GSP ... shows why)\n", file.c_str());
      exit_code = 1;
      return;
    }
    std::printf("ok%s%s\n", summary.empty() ? "" : ": ", summary.c_str());
    exit_code = 0;
  });
}

}  // namespace gaecli
