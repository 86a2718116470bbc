// The ordering stage as the exports and the pipeline drivers call it, with the arguments of the
// exported functions. Each reads the pairwise store that the context names and
// prints its lines to the run log that the caller holds.
#pragma once

#include "engine/stage_rules.h"

namespace gae {

// One group: `GroupMarkers` markers, their anchors by position, and the group's slices of the
// map order and positions. A group of fewer than two markers is left as it is.
void OrderingEntry(const StageContext& context, int Method, int ByWhat, int OrderingOption, int OrderingParam1,
                   int OrderingParam2, int GroupMarkers, const int* GroupAnchor, int* GroupOrder,
                   float* GroupPosition, int* Status);

// Every group of the map model in turn; a group that orders cleanly gets status 2, and the map
// state becomes 2 when every group has it.
void OrderingAllEntry(const StageContext& context, int Method, int ByWhat, int OrderingOption, int OrderingParam1,
                      int OrderingParam2, int NumMarkers, int NumGroups, const int* GroupSize,
                      int* GroupStatus, int* MapState, const int* Anchor, const int* Group,
                      int* Order, float* Position, int* Status);

}  // namespace gae
