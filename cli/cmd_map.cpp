// gaengine map FILE: the whole linkage-map construction with the default settings, run step by
// step through the exports as the desktop front end does, with a readable summary at the end.
// The tool (MAP for bi-parental populations, CDM for clonal F1 and double cross) comes from the
// file's extension or from --tool.
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "gaengine.h"
#include "map_check.h"

namespace gaecli {

namespace {

const char* const kPopulationNames[] = {
    "P1BC1F1", "P2BC1F1", "F1DH",    "RIL",     "P1BC1RIL", "P2BC1RIL", "F2",
    "F3",      "P1BC2F1", "P2BC2F1", "P1BC2RIL", "P2BC2RIL", "P1BC1F2",  "P2BC1F2",
    "P1BC2F2", "P2BC2F2", "P1BC1DH", "P2BC1DH", "P1BC2DH",  "P2BC2DH"};

// What a front end passes for each tool: its check, the stage exports' ToolCode with the
// settled options of a whole run, its output export and the files that come out.
struct ToolRun {
  const char* letters;
  int stage_code;
  int grouping_method, grouping_by;
  float threshold;
  int ordering_method, ordering_by, ordering_option, ordering_param1, ordering_param2;
  int rippling_by, window_size;
  int (*check)(const std::string&, MarkerTable&);
  void (*output)(int, const char*, int, const int*, int, int, int, const int*, const int*,
                 const int*, const float*, int, int, int, int);
  std::vector<const char*> suffixes;
  const char* corrected;  // the corrected data set
};

const ToolRun kMapRun{"MAP", 104, 1, 1, 3.0f, 2, 2, 1, 5, 3, 1, 5, CheckMapFile, MAPOutput,
                      {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".sdl", ".bip", ".met", ".err", "EC.map"},
                      "EC.map"};
const ToolRun kCdmRun{"CDM", 20, 1, 2, 0.3f, 2, 2, 1, 5, 3, 1, 5, CheckCdmFile, CDMOutput,
                      {".LRD", ".sum", ".sumf", ".summ", ".mtp", ".lod", ".lodf", ".lodm", ".rec",
                       ".recf", ".recm", ".dis", ".disf", ".dism", ".hap", ".cdq", ".err", "EC.cdm"},
                      "EC.cdm"};

// The population type: the first value of the file, after its remark lines.
int PopulationTypeOf(const std::string& path) {
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '!' || line.find_first_not_of(" \t\r") == std::string::npos) continue;
    std::istringstream fields(line);
    int type = 0;
    return fields >> type ? type : 0;
  }
  return 0;
}

// The working map that a front end keeps between the stage calls.
struct FrontEndMap {
  int num_markers = 0, num_groups = 0, map_state = 0;
  int num_mapped = 0, num_unlinked = 0;
  std::vector<int> group, group_size, group_status, order;
  std::vector<float> position;

  // From the marker groups: the group table, then the order (each group's markers by number,
  // then the unlinked, then the deleted markers) with zero positions.
  void BuildFromGroups() {
    num_groups = std::max(0, group.empty() ? 0 : *std::max_element(group.begin(), group.end()));
    MapGroupCheck(num_markers, &num_groups, group.data());
    group_size.assign(num_groups, 0);
    group_status.assign(num_groups, 1);
    order.clear();
    for (int g = 1; g <= num_groups; ++g)
      for (int m = 1; m <= num_markers; ++m)
        if (group[m - 1] == g) order.push_back(m), ++group_size[g - 1];
    num_mapped = static_cast<int>(order.size());
    for (int m = 1; m <= num_markers; ++m)
      if (group[m - 1] == 0) order.push_back(m);
    num_unlinked = static_cast<int>(order.size()) - num_mapped;
    for (int m = 1; m <= num_markers; ++m)
      if (group[m - 1] < 0) order.push_back(m);
    position.assign(num_markers, 0.0f);
    map_state = 1;
  }

  std::vector<int> NameCodes() const {
    std::vector<int> codes;
    for (int g = 1; g <= num_groups; ++g) {
      std::string name = (group_status[g - 1] >= 2 ? "Chromsome" : "Group") + std::to_string(g);
      name.resize(19, ' ');
      for (char c : name) codes.push_back(static_cast<unsigned char>(c));
    }
    return codes;
  }
};

class Stopwatch {
 public:
  double Lap() {
    const auto now = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(now - last_).count();
    last_ = now;
    return seconds;
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

bool Exists(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

// The total of the error report's "TotalError" line.
long long FlaggedGenotypes(const std::string& err_path) {
  std::ifstream in(err_path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("TotalError", 0) == 0) return std::stoll(line.substr(10));
  }
  return -1;
}

// The chromosome table of a summary file (.sum, .sumf, .summ): each chromosome's marker count
// and length, and the whole genome's last.
std::vector<std::pair<int, double>> ChromosomeTable(const std::string& path) {
  std::vector<std::pair<int, double>> rows;
  std::ifstream in(path);
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    if (line.find("ChromLength(cM)") != std::string::npos) {
      inside = true;
    } else if (inside && line.size() >= 80) {
      rows.push_back({std::stoi(line.substr(40, 20)), std::stod(line.substr(60, 20))});
      if (line.find("WholeGenome") != std::string::npos) break;
    }
  }
  return rows;
}

void PrintSummary(const ToolRun& tool, const std::string& file, const MarkerTable& markers,
                  const FrontEndMap& map, const std::vector<std::pair<const char*, double>>& times) {
  const int type = PopulationTypeOf(file);
  const bool clonal = tool.stage_code == kCdmRun.stage_code;
  std::printf("\nSummary of %s\n", file.c_str());
  if (clonal) std::printf("  Population        %s (type %d)\n", type == 1 ? "clonal F1" : "double cross", type);
  else std::printf("  Population        %s (type %d)\n", type >= 1 && type <= 20 ? kPopulationNames[type - 1] : "?", type);
  std::printf("  Markers read      %d\n", markers.num_markers);
  std::printf("  Linkage groups    %d\n", map.num_groups);
  int start = 0;
  for (int g = 0; g < map.num_groups; ++g) {
    const int size = map.group_size[g];
    const float length = size > 0 ? map.position[start + size - 1] - map.position[start] : 0.0f;
    std::printf("    Chromsome%-4d %5d markers %9.1f cM\n", g + 1, size, length);
    start += size;
  }
  std::printf("  Unlinked markers  %d\n", map.num_unlinked);
  const std::string stem = ResultStem(file);
  if (clonal) {
    // Each parent's map leaves out the markers that do not segregate in it.
    for (const auto& [suffix, parent] : {std::pair{".sumf", "First parent"}, std::pair{".summ", "Second parent"}}) {
      const std::vector<std::pair<int, double>> table = ChromosomeTable(stem + suffix);
      if (table.empty()) continue;
      std::printf("  %-17s %d markers %9.1f cM\n", parent, table.back().first, table.back().second);
      for (size_t g = 0; g + 1 < table.size(); ++g)
        std::printf("    Chromsome%-4zu %5d markers %9.1f cM\n", g + 1, table[g].first, table[g].second);
    }
  }
  const long long flagged = FlaggedGenotypes(stem + ".err");
  if (flagged >= 0)
    std::printf("  Suspect genotypes %lld set to missing in %s%s\n", flagged, stem.c_str(), tool.corrected);
  std::printf("  Files written    ");
  for (const char* suffix : tool.suffixes)
    if (Exists(stem + suffix)) std::printf(" %s%s", stem.c_str(), suffix);
  std::printf("\n  Time (wall clock)\n");
  for (const auto& [stage, seconds] : times) std::printf("    %-20s %8.2f s\n", stage, seconds);
}

int RunMap(const ToolRun& tool, const std::string& file) {
  Stopwatch clock;
  std::vector<std::pair<const char*, double>> times;
  MarkerTable markers;
  if (const int status = tool.check(file, markers); status != 0) {
    std::fprintf(stderr, "%s: check failed with status %d (see %s.log)\n", file.c_str(), status, tool.letters);
    return 1;
  }
  times.push_back({"read and pairs", clock.Lap()});
  FrontEndMap map;
  map.num_markers = markers.num_markers;
  map.group.assign(map.num_markers, 0);
  int status = 0;
  MAPGrouping(tool.stage_code, tool.grouping_method, tool.grouping_by, tool.threshold, map.num_markers,
              markers.anchor.data(), map.group.data(), &status);
  map.BuildFromGroups();
  times.push_back({"grouping", clock.Lap()});
  MAPOrderingAll(tool.stage_code, tool.ordering_method, tool.ordering_by, tool.ordering_option,
                 tool.ordering_param1, tool.ordering_param2, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, markers.anchor.data(), map.group.data(),
                 map.order.data(), map.position.data(), &status);
  times.push_back({"ordering", clock.Lap()});
  MAPRipplingAll(tool.stage_code, tool.rippling_by, tool.window_size, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, map.group.data(), map.order.data(),
                 map.position.data(), &status);
  times.push_back({"rippling", clock.Lap()});
  const std::vector<int> names = map.NameCodes();
  const PathArg path(file);
  tool.output(path.Len(), path.Data(), map.num_markers, markers.anchor.data(), map.num_mapped,
            map.num_unlinked, map.num_groups, names.data(), map.group_size.data(), map.order.data(),
            map.position.data(), 1, 1, 1, 1);
  times.push_back({"reports and scan", clock.Lap()});
  PrintSummary(tool, file, markers, map, times);
  return 0;
}

}  // namespace

void RegisterMapCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("map", "Build a linkage map from a MAP or CDM input file with the default settings");
  static std::string file, tool;
  cmd->add_option("file", file, "MAP or CDM input file")->required();
  cmd->add_option("--tool", tool, "MAP or CDM; by default from the file's extension (.cdm is CDM)")
      ->check(CLI::IsMember({"MAP", "CDM"}, CLI::ignore_case));
  cmd->callback([&exit_code] {
    std::string chosen = tool;
    if (chosen.empty()) {
      std::string extension = file.size() >= 4 ? file.substr(file.size() - 4) : "";
      for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      chosen = extension == ".cdm" ? "CDM" : "MAP";
    }
    for (char& c : chosen) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    exit_code = RunMap(chosen == "CDM" ? kCdmRun : kMapRun, file);
  });
}

}  // namespace gaecli
