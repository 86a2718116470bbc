// gaengine map FILE: the whole linkage-map construction with the default settings, run step by
// step through the exports as the desktop front end does, with a readable summary at the end.
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "gaengine.h"
#include "lod_tree_view.h"
#include "map_check.h"

namespace gaecli {

namespace {

const char* const kPopulationNames[] = {
    "P1BC1F1", "P2BC1F1", "F1DH",    "RIL",     "P1BC1RIL", "P2BC1RIL", "F2",
    "F3",      "P1BC2F1", "P2BC2F1", "P1BC2RIL", "P2BC2RIL", "P1BC1F2",  "P2BC1F2",
    "P1BC2F2", "P2BC2F2", "P1BC1DH", "P2BC1DH", "P1BC2DH",  "P2BC2DH"};

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

void PrintSummary(const std::string& file, const MarkerTable& markers, const FrontEndMap& map,
                  const std::vector<std::pair<const char*, double>>& times, const std::string& grouping_note) {
  const int type = PopulationTypeOf(file);
  std::printf("\nSummary of %s\n", file.c_str());
  std::printf("  Population        %s (type %d)\n", type >= 1 && type <= 20 ? kPopulationNames[type - 1] : "?", type);
  std::printf("  Markers read      %d\n", markers.num_markers);
  if (!grouping_note.empty()) std::printf("  Grouping          %s\n", grouping_note.c_str());
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
  const long long flagged = FlaggedGenotypes(stem + ".err");
  if (flagged >= 0) std::printf("  Suspect genotypes %lld set to missing in %sEC.map\n", flagged, stem.c_str());
  std::printf("  Files written    ");
  for (const char* suffix : {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".sdl", ".bip", ".met", ".err", "EC.map"})
    if (Exists(stem + suffix)) std::printf(" %s%s", stem.c_str(), suffix);
  std::printf("\n  Time (wall clock)\n");
  for (const auto& [stage, seconds] : times) std::printf("    %-20s %8.2f s\n", stage, seconds);
}

// The default threshold of a whole run, a LOD score.
constexpr float kDefaultLod = 3.0f;

// The LOD threshold of the run from --lod ("auto", a number, or empty for the default), with
// the words the summary gives about it. False when the option cannot be used.
bool ChooseThreshold(const std::string& file, const std::string& lod, int num_markers, float& threshold,
                     std::string& note) {
  threshold = kDefaultLod;
  if (lod.empty()) return true;
  if (lod != "auto") {
    try {
      size_t used = 0;
      threshold = std::stof(lod, &used);
      if (used != lod.size()) throw std::invalid_argument(lod);
    } catch (const std::exception&) {
      std::fprintf(stderr, "--lod takes a number or \"auto\", not \"%s\"\n", lod.c_str());
      return false;
    }
    char text[64];
    std::snprintf(text, sizeof text, "LOD %.1f, as asked", static_cast<double>(threshold));
    note = text;
    return true;
  }
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(file, num_markers, 2.0f, 15.0f, 1.0f, rows)) {
    std::fprintf(stderr, "%s: cannot read %s\n", file.c_str(), PairFileName(file).c_str());
    return false;
  }
  const AutoLod choice = ChooseLod(rows, num_markers);
  if (choice.found) {
    threshold = choice.threshold;
    note = choice.reason;
  }
  return true;
}

// With the default threshold: a warning when one group holds most markers while the LOD tree
// shows more groups that hold together over a run of higher thresholds.
std::string DefaultThresholdWarning(const std::string& file, const FrontEndMap& map) {
  const int largest = map.group_size.empty() ? 0 : *std::max_element(map.group_size.begin(), map.group_size.end());
  if (2 * largest <= map.num_markers) return "";
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(file, map.num_markers, 2.0f, 15.0f, 1.0f, rows)) return "";
  const AutoLod choice = ChooseLod(rows, map.num_markers);
  if (!choice.found || choice.threshold <= kDefaultLod || choice.groups < 2) return "";
  return "warning: one group holds " + std::to_string(largest) + " of " + std::to_string(map.num_markers) +
         " markers at LOD 3.0, while the LOD tree gives " + choice.reason + "; try --lod auto";
}

int RunMap(const std::string& file, const std::string& lod) {
  Stopwatch clock;
  std::vector<std::pair<const char*, double>> times;
  MarkerTable markers;
  if (const int status = CheckMapFile(file, markers); status != 0) {
    std::fprintf(stderr, "%s: check failed with status %d (see MAP.log)\n", file.c_str(), status);
    return 1;
  }
  times.push_back({"read and pairs", clock.Lap()});
  float threshold = kDefaultLod;
  std::string grouping_note;
  if (!ChooseThreshold(file, lod, markers.num_markers, threshold, grouping_note)) return 1;
  FrontEndMap map;
  map.num_markers = markers.num_markers;
  map.group.assign(map.num_markers, 0);
  int status = 0;
  MAPGrouping(104, 1, 1, threshold, map.num_markers, markers.anchor.data(), map.group.data(), &status);
  map.BuildFromGroups();
  if (lod.empty()) grouping_note = DefaultThresholdWarning(file, map);
  times.push_back({"grouping", clock.Lap()});
  MAPOrderingAll(104, 2, 2, 1, 5, 3, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, markers.anchor.data(), map.group.data(),
                 map.order.data(), map.position.data(), &status);
  times.push_back({"ordering", clock.Lap()});
  MAPRipplingAll(104, 1, 5, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, map.group.data(), map.order.data(),
                 map.position.data(), &status);
  times.push_back({"rippling", clock.Lap()});
  const std::vector<int> names = map.NameCodes();
  const PathArg path(file);
  MAPOutput(path.Len(), path.Data(), map.num_markers, markers.anchor.data(), map.num_mapped,
            map.num_unlinked, map.num_groups, names.data(), map.group_size.data(), map.order.data(),
            map.position.data(), 1, 1, 1, 1);
  times.push_back({"reports and scan", clock.Lap()});
  PrintSummary(file, markers, map, times, grouping_note);
  return 0;
}

}  // namespace

void RegisterMapCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("map", "Build a linkage map from a MAP input file with the default settings");
  static std::string file, lod;
  cmd->add_option("file", file, "MAP input file")->required();
  cmd->add_option("--lod", lod,
                  "LOD threshold of grouping: a number, or \"auto\" for the lowest threshold of the longest "
                  "run over which the groups stay the same (default 3)");
  static bool plots = false;
  cmd->add_flag("--plots", plots, "Also draw the map chart (.map.svg) and the pairwise heat map (.rf.png)");
  cmd->callback([&exit_code] {
    exit_code = RunMap(file, lod);
    if (exit_code == 0 && plots) exit_code = WriteMapPictures(file, "MAP");
  });
}

}  // namespace gaecli
