// The pairwise file of a MAP, CDM or PLM input file, read and estimated in one call, for the
// callers that choose the estimator (the command line and the map pipeline). The exports
// compute theirs inside their check with the front end's estimator; a complete file written
// here first is what they then reuse.
#pragma once

#include <string>

#include "twopoint/pair_estimator.h"

namespace gae {

// Reads `input_path` as the tool of `tool_code` reads it (104 MAP, 20 CDM, 30 PLM) and writes
// its pairwise file (PairStoreName of the path) with `estimator` on `threads` cores, unless a
// complete one lies there. The progress lines go to whatever log is open. False when the input
// cannot be read (MessageCode says why, its line printed), for another tool code, or when the
// file cannot be written.
bool WriteInputPairFile(const std::string& input_path, int tool_code, PairEstimator estimator,
                        int threads);

}  // namespace gae
