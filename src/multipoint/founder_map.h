// The multipoint map of one linkage group of pure lines: the bi-parental engine's order search,
// EM and error model run on the founder chain (founder_design.h, founder_calls.h).
#pragma once

#include <cstdint>
#include <vector>

#include "multipoint/group_map.h"

namespace gae {

// `letters`: the reader's letters A to H and X, marker-major, for the group's markers;
// `patterns` their founder patterns; `start_order` 0-based. The map is not ok when the type is
// not 1 to 4 or the arrays do not fit together.
MultipointGroupMap MapFounderGroup(int32_t pure_line_type, int32_t num_individuals, const std::vector<char>& letters,
                                   const std::vector<int32_t>& patterns, const std::vector<int32_t>& start_order,
                                   const MultipointOptions& options);

}  // namespace gae
