// The clonal F1 or double-cross tool's marker data beside the finished map.
#pragma once

#include <cstdint>
#include <vector>

#include "report/map_layout.h"

namespace gae {

// `population_type` is 1 for a clonal F1, 2 for a double cross; `types` holds type codes.
struct ClonalLayout : GenotypeLayout {
  std::vector<int32_t> category;  // 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or A=CB=D, 5 A=DB=C
  // Phase signs of the mapped markers in each parent (map order) when the map found them;
  // empty: read from the pairs along each chromosome.
  std::vector<int8_t> phase_first, phase_second;
};

}  // namespace gae
