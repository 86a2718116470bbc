// The pairwise file of a clonal F1 or double cross: seven words per pair, (minus the combined
// LOD, combined frequency, first parent's LOD, second parent's LOD, first parent's frequency,
// second parent's frequency, phase as an int32).
#pragma once

#include <cstdint>
#include <string>

#include "twopoint/pair_estimator.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

inline constexpr int kClonalRecordLength = 7;

struct ClonalMarkers {
  int32_t population_type = 1;   // 1 clonal F1, any other the double cross
  int32_t mapping_function = 1;
  int64_t num_markers = 0;
  int64_t num_individuals = 0;
  const int32_t* categories = nullptr;  // 1 to 5 by marker
  const char* types = nullptr;          // genotype letters A to K, X; individuals fastest
};

// Writes the pairwise file `lrd_name` unless a complete one lies there, estimating the pairs on
// `threads` cores; prints 2801, any 2802 warnings and 2803 to the caller's log. The marker of
// the lower category is passed first (the first of the pair on a tie). The clonal AB=CD pairs
// draw from `random` in record order, so the file is the same at any number of threads (the
// exact estimator draws nothing). False only when the file cannot be written.
bool CDMPairwiseFile(const std::string& lrd_name, const ClonalMarkers& markers, int threads,
                     UniformStream& random, PairEstimator estimator = PairEstimator::kFrontEnd);

}  // namespace gae
