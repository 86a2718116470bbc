// The consensus ordering of the command: groups of thousands of markers ordered along the
// backbone of their mean distances (backbone_order.h) rather than by the multi-start tour
// search, which is cubic in the group and loses its way among thousands of markers; smaller
// groups as the desktop program orders them.
#pragma once

#include <cstdint>

#include "engine/map_state.h"
#include "twopoint/pair_table.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

// Orders every group of the grouped consensus `map` and gives its positions; `maps_holding`
// (by marker) counts the input maps that hold each marker. `method` is the consensus ordering
// method of the small groups. The map is then ordered.
void OrderConsensusGroups(const PairTable& table, int method, const int32_t* maps_holding, MapModel& map,
                          UniformStream& random);

}  // namespace gae
