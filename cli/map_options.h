// The options of `gaengine map` beyond the defaults: grouping with a frequency cap and
// ordering around a frame of co-dominant markers. They call the engine's routines on the
// pairwise file of the last check, where the default path goes through the exports.
#pragma once

#include <string>

#include "engine/map_state.h"
#include "map_check.h"

namespace gaecli {

// Grouping by LOD threshold (the default method) where a pair links only if its frequency is
// also below max_rf (gae::kNoFrequencyCap: no cap). Fills map.group; false when the pairwise file cannot be read.
bool GroupWithCap(float threshold, float max_rf, gae::MapModel& map);

// Orders and ripples every group of a grouped map around its co-dominant markers, falling
// back to the default ordering for a group with too few; the map becomes rippled. `note`
// says what was done, for the summary. False when the pairwise file cannot be read.
bool OrderAroundFrames(const MarkerTable& markers, gae::MapModel& map, std::string& note);

}  // namespace gaecli
