#include "consensus_run.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "front_end_map.h"
#include "gaengine.h"
#include "map_check.h"

namespace gaecli {

namespace {

// What CheckErrorCMP tells about the input maps.
struct ConsensusCheck {
  int space_type = 0, space_unit = 0, num_maps = 0, num_markers = 0;
  std::vector<int> name_codes, maps_holding, places;
  int Place(int marker, int map) const { return places[static_cast<size_t>(map) * num_markers + marker]; }
};

// The names and lengths of the input maps, for the summary only: the exports hand back the
// places of the markers, not their positions. The file has passed the library's check, so
// its rows are read plainly: remarks skipped, the three header values, the list of maps, then
// one row per marker whose last value is a position or an interval.
struct InputMap {
  std::string name;
  float length = 0.0f;
};

std::vector<InputMap> ReadInputMaps(const std::string& path, const ConsensusCheck& check) {
  std::ifstream in(path);
  std::vector<std::string> rows;
  for (std::string line; std::getline(in, line);) {
    const size_t first = line.find_first_not_of(" \t\r");
    if (first != std::string::npos && line[first] != '!') rows.push_back(line);
  }
  std::vector<InputMap> maps(check.num_maps);
  std::vector<int> sizes(check.num_maps, 0);
  size_t row = 3;
  for (int c = 0; c < check.num_maps && row < rows.size(); ++c, ++row) {
    std::istringstream fields(rows[row]);
    fields >> maps[c].name >> sizes[c];
  }
  const float unit = check.space_unit == 2 ? 100.0f : 1.0f;
  for (int c = 0; c < check.num_maps; ++c) {
    float first = 0.0f, last = 0.0f;
    for (int j = 0; j < sizes[c] && row < rows.size(); ++j, ++row) {
      std::istringstream fields(rows[row]);
      std::string name, id;
      float value = 0.0f;
      fields >> name >> id >> value;
      last = check.space_type == 1 ? last + value * unit : value * unit;
      if (j == 0) first = last;
    }
    maps[c].length = last - first;
  }
  return maps;
}

// Spearman's rank correlation between the order of `map` and the consensus order, over the
// markers of that map that the consensus places; 2 (no value) for fewer than two of them.
double RankCorrelation(const ConsensusCheck& check, int map, const FrontEndMap& consensus) {
  std::vector<std::pair<int, int>> pairs;  // (place on the map, rank in the consensus)
  for (int k = 0; k < consensus.num_mapped; ++k) {
    const int place = check.Place(consensus.order[k] - 1, map);
    if (place > 0) pairs.push_back({place, k});
  }
  const double n = static_cast<double>(pairs.size());
  if (pairs.size() < 2) return 2.0;
  std::sort(pairs.begin(), pairs.end());  // by place: the map's own ranks are 0, 1, ...
  std::vector<int> consensus_rank(pairs.size());
  for (size_t i = 0; i < pairs.size(); ++i) consensus_rank[i] = pairs[i].second;
  std::vector<int> sorted = consensus_rank;
  std::sort(sorted.begin(), sorted.end());
  double d2 = 0.0;
  for (size_t i = 0; i < pairs.size(); ++i) {
    const double r = static_cast<double>(std::lower_bound(sorted.begin(), sorted.end(), consensus_rank[i]) - sorted.begin());
    d2 += (r - static_cast<double>(i)) * (r - static_cast<double>(i));
  }
  return 1.0 - 6.0 * d2 / (n * (n * n - 1.0));
}

int CheckConsensusFile(const std::string& file, ConsensusCheck& check) {
  const PathArg path(file);
  int status = 0;
  CMPFindNumMarkers(path.Len(), path.Data(), &check.space_type, &check.space_unit,
                    &check.num_maps, &check.num_markers, &status);
  if (status != 0) return status;
  check.name_codes.assign(static_cast<size_t>(check.num_markers) * 35, 0);
  check.maps_holding.assign(check.num_markers, 0);
  check.places.assign(static_cast<size_t>(check.num_markers) * check.num_maps, 0);
  CheckErrorCMP(path.Len(), path.Data(), check.num_maps, check.num_markers, check.name_codes.data(),
                check.maps_holding.data(), check.places.data(), &status);
  return status;
}

void PrintSummary(const std::string& file, const ConsensusCheck& check, const FrontEndMap& map) {
  const long shared = std::count_if(check.maps_holding.begin(), check.maps_holding.end(),
                                    [](int held) { return held >= 2; });
  float length = 0.0f;
  int start = 0;
  for (int g = 0; g < map.num_groups; ++g) {
    const int size = map.group_size[g];
    if (size > 0) length += map.position[start + size - 1] - map.position[start];
    start += size;
  }
  std::printf("\nConsensus of %s\n", file.c_str());
  std::printf("  Markers           %d\n", check.num_markers);
  std::printf("  Input maps        %d\n", check.num_maps);
  std::printf("  Shared markers    %ld (on two maps or more)\n", shared);
  std::printf("  Consensus length  %.1f cM\n", length);
  // The direction of a consensus is arbitrary: it is read the way most maps run, so that a map
  // that disagrees stands out by a low or negative correlation.
  std::vector<double> rho(check.num_maps);
  double sum = 0.0;
  for (int c = 0; c < check.num_maps; ++c) {
    rho[c] = RankCorrelation(check, c, map);
    if (rho[c] <= 1.0) sum += rho[c];
  }
  const double sign = sum < 0.0 ? -1.0 : 1.0;
  const std::vector<InputMap> inputs = ReadInputMaps(file, check);
  std::printf("  %-20s %8s %10s %16s\n", "Input map", "markers", "length", "rank correlation");
  for (int c = 0; c < check.num_maps; ++c) {
    int held = 0;
    for (int m = 0; m < check.num_markers; ++m) held += check.Place(m, c) > 0;
    std::printf("  %-20s %8d %7.1f cM", inputs[c].name.c_str(), held, inputs[c].length);
    if (rho[c] <= 1.0) std::printf(" %16.3f\n", sign * rho[c]);
    else std::printf(" %16s\n", "-");
  }
  const std::string stem = ResultStem(file);
  std::printf("  Files written     %s.LRD %s.sum %s.dis\n", stem.c_str(), stem.c_str(), stem.c_str());
}

}  // namespace

int RunConsensus(const std::string& file) {
  ConsensusCheck check;
  if (const int status = CheckConsensusFile(file, check); status != 0) {
    std::fprintf(stderr, "%s: check failed with status %d (see CMP.log)\n", file.c_str(), status);
    return 1;
  }
  // The settled defaults of a whole consensus run: one group, the shared markers ordered
  // first by distance, a window of five.
  FrontEndMap map;
  map.num_markers = check.num_markers;
  map.group.assign(map.num_markers, 0);
  int status = 0;
  MAPGrouping(105, 1, 3, 3.0f, map.num_markers, check.maps_holding.data(), map.group.data(), &status);
  map.BuildFromGroups();
  MAPOrderingAll(105, 2, 3, 1, 5, 3, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, check.maps_holding.data(),
                 map.group.data(), map.order.data(), map.position.data(), &status);
  MAPRipplingAll(105, 3, 5, map.num_markers, map.num_groups, map.group_size.data(),
                 map.group_status.data(), &map.map_state, map.group.data(), map.order.data(),
                 map.position.data(), &status);
  const std::vector<int> names = map.NameCodes();
  const PathArg path(file);
  CMPOutput(path.Len(), path.Data(), map.num_markers, map.num_mapped, map.num_unlinked,
            map.num_groups, names.data(), map.group_size.data(), map.order.data(),
            map.position.data(), 1);
  PrintSummary(file, check, map);
  return 0;
}

}  // namespace gaecli
