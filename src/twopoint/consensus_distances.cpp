#include "twopoint/consensus_distances.h"

#include <cmath>

#include "vocabulary/pair_index.h"
#include "twopoint/mapping_function.h"

namespace gae {

namespace {

constexpr int kMorgan = 3;

// Each marker's position on each map, the maps of one marker side by side so that a pair
// reads two short rows.
struct PlaceGrid {
  int64_t num_maps = 0;
  std::vector<float> position;   // [marker][map]
  std::vector<uint8_t> present;  // [marker][map]
};

PlaceGrid BuildGrid(const std::vector<ChromosomeRecord>& maps, const DistinctMarkers& table) {
  PlaceGrid grid;
  grid.num_maps = static_cast<int64_t>(maps.size());
  const std::size_t cells = static_cast<std::size_t>(table.Count()) * maps.size();
  grid.position.assign(cells, 0.0f);
  grid.present.assign(cells, 0);
  for (std::size_t c = 0; c < maps.size() && c < table.ids.size(); ++c) {
    const std::vector<int32_t>& ids = table.ids[c];
    for (std::size_t j = 0; j < ids.size() && j < maps[c].positions.size(); ++j) {
      const std::size_t cell = static_cast<std::size_t>(ids[j] - 1) * maps.size() + c;
      if (grid.present[cell]) continue;
      grid.present[cell] = 1;
      grid.position[cell] = maps[c].positions[j];
    }
  }
  return grid;
}

}  // namespace

std::vector<float> ConsensusMeanDistances(const std::vector<ChromosomeRecord>& maps,
                                          const DistinctMarkers& table) {
  const int64_t m = table.Count();
  std::vector<float> mean(static_cast<std::size_t>(PairCount(m)), 0.0f);
  const PlaceGrid grid = BuildGrid(maps, table);
  const int64_t w = grid.num_maps;
  int64_t k = 0;
  for (int64_t i = 2; i <= m; ++i) {
    const float* pi = grid.position.data() + (i - 1) * w;
    const uint8_t* hi = grid.present.data() + (i - 1) * w;
    for (int64_t j = 1; j < i; ++j) {
      const float* pj = grid.position.data() + (j - 1) * w;
      const uint8_t* hj = grid.present.data() + (j - 1) * w;
      float sum = 0.0f;
      int32_t count = 0;
      for (int64_t c = 0; c < w; ++c) {
        if (hi[c] && hj[c]) {
          sum += std::fabs(pi[c] - pj[c]);
          ++count;
        }
      }
      mean[k++] = count > 0 ? sum / static_cast<float>(count) : kUnlinkedDistance;
    }
  }
  return mean;
}

void ConsensusPairRecord(float mean_distance, float* record) {
  record[0] = mean_distance;
  record[1] = MapDistanceToRec(kMorgan, mean_distance);
}

}  // namespace gae
