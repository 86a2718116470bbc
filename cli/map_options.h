// The options of `gaengine map` beyond the defaults: grouping with a frequency cap and
// ordering around a frame of co-dominant markers. They call the engine's routines on the
// pairwise file of the last check, where the default path goes through the exports.
#pragma once

#include <string>

#include "engine/linkage_rule.h"
#include "engine/map_state.h"
#include "map_check.h"

namespace gaecli {

// Grouping by the library's linkage rule on the pairwise file of the last check, for any map
// tool, anchored markers starting their groups. Fills map.group; false when the pairwise file
// cannot be read.
bool GroupByLinkageRule(const gae::LinkageRule& rule, const int32_t* anchors, gae::MapModel& map);

// Orders and ripples every group of a grouped map around its co-dominant markers, falling
// back to the default ordering for a group with too few; the map becomes rippled. `note`
// says what was done, for the summary. False when the pairwise file cannot be read.
bool OrderAroundFrames(const MarkerTable& markers, gae::MapModel& map, std::string& note);

}  // namespace gaecli
