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

}  // namespace gae
