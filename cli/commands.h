// Sub-commands of the `gaengine` command. Each one registers itself on the application and
// writes its exit status into `exit_code` when it runs. They use the library only through its
// exported C functions, as the desktop front end does.
#pragma once

#include <string>
#include <vector>

#include "input/tool_codes.h"

namespace CLI {
class App;
}

namespace gaecli {

void RegisterMarkersCommand(CLI::App& app, int& exit_code);
void RegisterPairsCommand(CLI::App& app, int& exit_code);
void RegisterMapCommand(CLI::App& app, int& exit_code);
void RegisterCheckCommand(CLI::App& app, int& exit_code);
void RegisterTwoPointCommand(CLI::App& app, int& exit_code);
void RegisterSnpCommand(CLI::App& app, int& exit_code);
void RegisterBinCommand(CLI::App& app, int& exit_code);
void RegisterPlotCommand(CLI::App& app, int& exit_code);
void RegisterGroupsCommand(CLI::App& app, int& exit_code);
void RegisterImportCommand(CLI::App& app, int& exit_code);

// Draws <stem>.map.svg and <stem>.rf.png of a finished map from its result files. `tool_name`
// is MAP, CDM or CMP; empty to take it from the file name. Returns the exit status.
int WriteMapPictures(const std::string& file, const std::string& tool_name);
// The names after the stem of the pictures WriteMapPictures may write.
std::vector<std::string> MapPictureSuffixes();

// The tool code users give for bi-parental rows in SNP and binning files; the readers take
// every code other than the clonal and pure-line ones as bi-parental.
inline constexpr int kBiparentalRowsCode = 2;

// "2 bi-parental (MAP), 20 clonal (CDM), 30 pure lines (PLM)": the --tool-code values.
inline std::string DesignCodesHelp() {
  return std::to_string(kBiparentalRowsCode) + " bi-parental (MAP), " + std::to_string(gae::kClonalToolCode) +
         " clonal F1 or double cross (CDM), " + std::to_string(gae::kPureLineToolCode) +
         " four- or eight-way pure lines (PLM)";
}

// The path argument of the exports: its bytes and their count.
struct PathArg {
  explicit PathArg(const std::string& path) : text(path) {}
  int Len() const { return static_cast<int>(text.size()); }
  const char* Data() const { return text.data(); }
  std::string text;
};

}  // namespace gaecli
