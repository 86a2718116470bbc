// The pairwise file of a MAP, CDM or PLM input file, read and estimated in one call, for the
// callers that choose the estimator (the command line and the map pipeline). The exports
// compute theirs inside their check with the front end's estimator; a complete file written
// here first is what they then reuse.
#pragma once

#include <string>

#include "input/map_tool_reader.h"
#include "twopoint/pair_estimator.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

// The pair file `lrd` of data already read (tool code 104, 20 or 30); `random` feeds the front
// end's clonal estimates, which draw.
bool WriteDataPairFile(const std::string& lrd, int tool_code, const MapToolInput& data, PairEstimator estimator,
                       int threads, UniformStream& random);

// Reads `input_path` as the tool of `tool_code` reads it (104 MAP, 20 CDM, 30 PLM) and writes
// its pairwise file (PairStoreName of the path) with `estimator` on `threads` cores, unless a
// complete one lies there. The progress lines go to whatever log is open. False when the input
// cannot be read (MessageCode says why, its line printed), for another tool code, or when the
// file cannot be written.
bool WriteInputPairFile(const std::string& input_path, int tool_code, PairEstimator estimator,
                        int threads);

}  // namespace gae
