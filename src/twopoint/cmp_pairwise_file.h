// The pairwise file of a consensus map: for every pair of distinct markers the mean distance
// over the input maps that hold both, and its Morgan frequency.
#pragma once

#include <string>
#include <vector>

#include "input/chromosome_record.h"
#include "input/distinct_markers.h"

namespace gae {

// Words per record: the mean distance, then its Morgan frequency.
inline constexpr int kCmpRecordLength = 2;
// The stages read the stored frequency back through Morgan's function, which turns it into
// the very distance it came from (below 50 cM).
inline constexpr int kCmpMappingFunction = 3;

// Writes the pairwise file `lrd_name` unless a complete one lies there. Prints 2804 once the
// distances stand and 2805 when the file is written, to the caller's log; never 2801, since
// nothing is estimated. False only when the file cannot be written.
bool CMPPairwiseFile(const std::string& lrd_name, const std::vector<ChromosomeRecord>& maps,
                     const DistinctMarkers& table);

}  // namespace gae
