// The pairwise file of a four-way or eight-way pure-line population: every marker pair
// estimated by the pure-line engine and stored as (minus the LOD, recombination frequency).
#pragma once

#include <cstdint>
#include <string>

#include "twopoint/pair_estimator.h"

namespace gae {

struct PureLineMarkers {
  int32_t population_type = 0;  // 1 4PDH, 2 4PRIL, 3 8PDH, 4 8PRIL
  int64_t num_markers = 0;
  int64_t num_individuals = 0;
  const int32_t* patterns = nullptr;  // by marker: founder pattern, one digit per founder
  const char* types = nullptr;        // founder letters, individuals fastest, marker by marker
};

// Words per record: minus the LOD, then the recombination frequency.
inline constexpr int kPlmRecordLength = 2;

// Writes the pairwise file `lrd_name` unless a complete one lies there, estimating the pairs on
// `threads` cores with `estimator`; prints 2801, any 2802 warnings and 2803 to the caller's log. A population type other than 1 to 4 estimates nothing: its pairs are written
// unlinked (frequency 0.5, LOD 0). False only when the file cannot be written.
bool PLMPairwiseFile(const std::string& lrd_name, const PureLineMarkers& markers, int threads,
                     PairEstimator estimator = PairEstimator::kFrontEnd);

}  // namespace gae
