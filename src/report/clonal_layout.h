// The clonal F1 or double-cross tool's marker data beside the finished map.
#pragma once

#include <cstdint>
#include <vector>

#include "report/map_layout.h"

namespace gae {

struct ClonalLayout : FinishedMapLayout {
  int32_t population_type = 1;  // 1 clonal F1, 2 double cross
  int32_t space_type = 1;
  int32_t num_individuals = 0;
  std::vector<int32_t> category;  // 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or A=CB=D, 5 A=DB=C
  std::vector<char> types;        // type codes, individuals fastest, input order

  const char* TypesOf(int32_t marker) const {
    return types.data() + static_cast<int64_t>(marker - 1) * num_individuals;
  }
};

}  // namespace gae
