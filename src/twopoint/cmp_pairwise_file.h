// The pairwise file of a consensus map: for every pair of distinct markers the mean distance
// over the input maps that hold both, and its Morgan frequency.
#pragma once

#include <string>
#include <vector>

#include "input/chromosome_record.h"
#include "input/distinct_markers.h"

namespace gae {

// Writes `project path less its last four characters`.LRD unless a complete file lies there,
// and leaves its name, record length (2 words) and the mapping function in the process state.
// The mapping function is always Morgan's: the stored frequency is a distance over 100 and
// must come back as that distance. Prints 2804 and 2805 to the CMP log, never 2801: there is
// nothing to estimate. False only when the file cannot be written.
bool CMPPairwiseFile(const std::string& project_path, const std::vector<ChromosomeRecord>& maps,
                     const DistinctMarkers& table);

}  // namespace gae
