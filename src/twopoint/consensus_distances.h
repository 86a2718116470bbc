// Pair values of a consensus map. There are no genotypes behind a consensus: two markers are
// as far apart as the input maps that hold both of them say on average, and that mean
// distance stands in the pairwise file where a bi-parental run keeps minus the LOD score.
#pragma once

#include <cstdint>
#include <vector>

#include "input/chromosome_record.h"
#include "input/distinct_markers.h"

namespace gae {

// The mean absolute distance (cM) of every pair of distinct markers, in record order: entry
// K-1 belongs to the pair (I, J), J < I, K = (I-1)(I-2)/2 + J. The differences are summed in
// 32 bits over the maps in their order and divided by the number of maps holding both
// markers; a pair that no map holds together is 1000, unlinked. A marker that stands twice on
// one map is taken at its first place there.
std::vector<float> ConsensusMeanDistances(const std::vector<ChromosomeRecord>& maps,
                                          const DistinctMarkers& table);

// The two words of a consensus pair record: the mean distance, and the recombination
// frequency that Morgan's function gives it (at most 0.5).
void ConsensusPairRecord(float mean_distance, float* record);

}  // namespace gae
