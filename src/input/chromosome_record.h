#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

// One chromosome (or linkage group) of a map: its markers in map order with their cumulative
// positions in centiMorgans.
struct ChromosomeRecord {
  std::vector<std::string> marker_names;  // 35 characters each, blank padded
  std::vector<float> positions;           // centiMorgans, ascending
  int32_t NumMarkers() const { return static_cast<int32_t>(marker_names.size()); }
};

// The 1-based chromosome that holds the k-th marker when the chromosomes' markers are laid end
// to end in map order; 0 when k lies outside 1..(total markers).
int32_t ChromosomeOfMarker(int64_t k, const std::vector<ChromosomeRecord>& records);

}  // namespace gae
