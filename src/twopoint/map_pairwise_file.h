// The pairwise file of a bi-parental population: every marker pair estimated by the two-point
// engine and stored as (minus the LOD, recombination frequency).
#pragma once

#include <cstdint>
#include <string>

#include "twopoint/pair_estimator.h"

namespace gae {

struct BiparentalMarkers {
  int32_t population_type = 0;
  int32_t mapping_function = 1;
  int64_t num_markers = 0;
  int64_t num_individuals = 0;
  const int32_t* kinds = nullptr;  // by marker: 1 co-dominant, 12 dominant, 10 recessive
  const char* types = nullptr;     // genotype letters, individuals fastest, marker by marker
};

// Words per record: minus the LOD, then the recombination frequency.
inline constexpr int kMapRecordLength = 2;

// Writes the pairwise file `lrd_name` unless a complete one lies there, estimating the pairs on
// `threads` cores with `estimator`. Prints 2801, any 2802 warnings and 2803 to the caller's
// log. False only when the file cannot be written.
bool MAPPairwiseFile(const std::string& lrd_name, const BiparentalMarkers& markers, int threads,
                     PairEstimator estimator = PairEstimator::kFrontEnd);

}  // namespace gae
