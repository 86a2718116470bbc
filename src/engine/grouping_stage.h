// The grouping stage as the export and the pipeline drivers call it, with the arguments of the
// exported function: reads the pairwise store that the context names and fills
// Group from Anchor. The caller holds the tool's run log.
#pragma once

#include "engine/stage_rules.h"

namespace gae {

// Method 1 by threshold (a LOD score for ByWhat 1, otherwise a frequency or a distance),
// 2 to a number of groups (Threshold rounded, halves away from zero), 3 by anchors alone.
// A consensus map takes ByWhat 3 only: its method 1 puts every marker in one group and its
// method 2 groups by distance, its Anchor holding map counts, not anchors.
void GroupingEntry(const StageContext& context, int Method, int ByWhat, float Threshold, int NumMarkers,
                   const int* Anchor, int* Group, int* Status);

}  // namespace gae
