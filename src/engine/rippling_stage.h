// The rippling stage as the exports and the pipeline drivers call it, with the arguments of the
// exported functions. Each reads the pairwise store that the context names; the
// caller holds the tool's run log.
#pragma once

#include "engine/stage_rules.h"

namespace gae {

// One ordered group: `GroupMarkers` markers in the group's slices of order and positions.
// Groups of one or two markers are left as they are.
void RipplingEntry(const StageContext& context, int ByWhat, int WindowSize, int GroupMarkers, int* GroupOrder,
                   float* GroupPosition, int* Status);

// Every group that has been ordered; each rippled cleanly gets status 3, and the map state
// becomes 3 when every group has it. NumMarkers bounds the slices; Group is not needed.
void RipplingAllEntry(const StageContext& context, int ByWhat, int WindowSize, int NumMarkers, int NumGroups,
                      const int* GroupSize, int* GroupStatus, int* MapState, const int* Group,
                      int* Order, float* Position, int* Status);

}  // namespace gae
