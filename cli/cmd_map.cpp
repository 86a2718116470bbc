// gaengine map FILE: the whole linkage-map construction with the default settings, run step by
// step through the exports as the desktop front end does, with a readable summary at the end.
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
#include "consensus_run.h"
#include "front_end_map.h"
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
                  const std::vector<std::pair<const char*, double>>& times) {
  const int type = PopulationTypeOf(file);
  std::printf("\nSummary of %s\n", file.c_str());
  std::printf("  Population        %s (type %d)\n", type >= 1 && type <= 20 ? kPopulationNames[type - 1] : "?", type);
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
  const long long flagged = FlaggedGenotypes(stem + ".err");
  if (flagged >= 0) std::printf("  Suspect genotypes %lld set to missing in %sEC.map\n", flagged, stem.c_str());
  std::printf("  Files written    ");
  for (const char* suffix : {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".sdl", ".bip", ".met", ".err", "EC.map"})
    if (Exists(stem + suffix)) std::printf(" %s%s", stem.c_str(), suffix);
  std::printf("\n  Time (wall clock)\n");
  for (const auto& [stage, seconds] : times) std::printf("    %-20s %8.2f s\n", stage, seconds);
}

int RunMap(const std::string& file) {
  Stopwatch clock;
  std::vector<std::pair<const char*, double>> times;
  MarkerTable markers;
  if (const int status = CheckMapFile(file, markers); status != 0) {
    std::fprintf(stderr, "%s: check failed with status %d (see MAP.log)\n", file.c_str(), status);
    return 1;
  }
  times.push_back({"read and pairs", clock.Lap()});
  FrontEndMap map;
  map.num_markers = markers.num_markers;
  map.group.assign(map.num_markers, 0);
  int status = 0;
  MAPGrouping(104, 1, 1, 3.0f, map.num_markers, markers.anchor.data(), map.group.data(), &status);
  map.BuildFromGroups();
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
  PrintSummary(file, markers, map, times);
  return 0;
}

// A consensus-map file goes by its extension, as the desktop program tells its tools apart.
bool IsConsensusFile(const std::string& file) {
  if (file.size() < 4) return false;
  std::string ext = file.substr(file.size() - 4);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext == ".cmp";
}

}  // namespace

void RegisterMapCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("map", "Build a linkage map from a MAP input file, or a consensus of the maps of a CMP file, with the default settings");
  static std::string file;
  cmd->add_option("file", file, "MAP or CMP input file")->required();
  cmd->callback([&exit_code] { exit_code = IsConsensusFile(file) ? RunConsensus(file) : RunMap(file); });
}

}  // namespace gaecli
