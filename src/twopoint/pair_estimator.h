// Which two-point estimator fills a pairwise file: the one the desktop program's exports use,
// whose iterations start from a single guess (kept for them byte for byte), or the exact
// maximum of each pair's likelihood with the LOD as the likelihood ratio of the observed data.
// Both write the same records.
#pragma once

#include <string_view>

namespace gae {

enum class PairEstimator : int { kFrontEnd, kExact };

// "front-end" or "exact", as fingerprints and summaries name them.
constexpr std::string_view PairEstimatorName(PairEstimator estimator) {
  return estimator == PairEstimator::kExact ? "exact" : "front-end";
}

}  // namespace gae
