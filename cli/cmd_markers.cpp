// gaengine markers TOOL FILE: the number of markers in an input file.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "frame/tool_profile.h"
#include "gaengine.h"
#include "library_output.h"
#include "user_errors.h"

namespace gaecli {

namespace {

int CountMarkers(const std::string& tool, int tool_code, const PathArg& path, int& count) {
  int status = 0;
  if (tool == "MAP") MAPFindNumMarkers(path.Len(), path.Data(), &count, &status);
  else if (tool == "CDM") CDMFindNumMarkers(path.Len(), path.Data(), &count, &status);
  else if (tool == "PLM") PLMFindNumMarkers(path.Len(), path.Data(), &count, &status);
  else if (tool == "SNP") SNPFindNumMarkers(tool_code, path.Len(), path.Data(), &count, &status);
  else if (tool == "BIN") BINFindNumMarkers(tool_code, path.Len(), path.Data(), &count, &status);
  return status;
}

// The stage ToolCode of a map tool named by its letters, or 0 for the SNP and BIN files.
int StageCodeOf(const std::string& letters) {
  for (const gae::MapTool id : {gae::MapTool::kMAP, gae::MapTool::kCDM, gae::MapTool::kPLM})
    if (gae::ProfileOf(id).letters == letters) return gae::ProfileOf(id).tool_code;
  return 0;
}

}  // namespace

void RegisterMarkersCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("markers", "Print the number of markers of an input file");
  static std::string tool;
  static std::string file;
  static int tool_code = kBiparentalRowsCode;
  cmd->add_option("tool", tool, "MAP, CDM, PLM, SNP or BIN")
      ->required()
      ->transform(CLI::IsMember({"MAP", "CDM", "PLM", "SNP", "BIN"}, CLI::ignore_case));
  cmd->add_option("file", file, "Input file")->required();
  cmd->add_option("--tool-code", tool_code,
                  "Population rules of SNP and BIN files: " + DesignCodesHelp())
      ->capture_default_str();
  cmd->callback([&exit_code] {
    std::string upper = tool;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    int count = 0;
    int status = 0;
    {
      const LibraryOutput quiet;
      status = CountMarkers(upper, tool_code, PathArg(file), count);
    }
    if (status != 0) {
      ExplainRefusal(file, StageCodeOf(upper), status);
      exit_code = 1;
      return;
    }
    std::printf("%s: %d markers\n", file.c_str(), count);
    exit_code = 0;
  });
}

}  // namespace gaecli
