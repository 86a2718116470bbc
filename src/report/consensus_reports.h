// The reports of a consensus map. There are no genotypes behind it, so there is no marker
// table, no LOD or frequency matrix and no written input file: `.sum` shows each marker with
// the number of input maps that hold it and its place on each of them, and `.dis` the mean
// distances between the first markers of the consensus order.
#pragma once

#include <string>

#include "input/distinct_markers.h"
#include "report/map_layout.h"
#include "twopoint/pair_table.h"

namespace gae {

// `map` holds the distinct markers (their names) and the caller's consensus map; `table` says
// where each input map has each marker; `num_maps` is the number of input maps.
std::string ConsensusSumReport(const FinishedMapLayout& map, const DistinctMarkers& table,
                               int32_t num_maps);

// The first min(linked markers, 100) markers of the consensus order; each cell is the pair's
// stored frequency turned back into a distance by the store's mapping function (Morgan's).
std::string ConsensusDisReport(const FinishedMapLayout& map, const PairTable& pairs);

}  // namespace gae
