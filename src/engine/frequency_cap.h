// A frequency cap on linkage: a pair links only if its recombination frequency lies below the
// cap as well as its LOD above the threshold. In a few hundred F2 plants, chance pairs that
// clear LOD 3 between chromosomes come with frequencies well above 1/2 (the likelihood peaks
// on the far side), and one such pair merges two chromosomes into one group.
#pragma once

#include <cstdint>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae {

// A cap no frequency reaches.
inline constexpr float kNoFrequencyCap = 2.0f;

// The pairs of `table` (markers 1..n) as two words a pair, minus the LOD then the frequency,
// where a pair whose frequency is not below `max_rf` holds no value (NaN) and so never links,
// folds in or seeds a group. Grouping and the LOD tree read it as they read the store.
class CappedPairs {
 public:
  CappedPairs(const PairTable& table, int32_t n, float max_rf);
  const PairTable& Table() const { return table_; }
  int64_t Capped() const { return capped_; }  // pairs that lost their value

 private:
  std::vector<float> records_;
  PairTable table_;
  int64_t capped_ = 0;
};

}  // namespace gae
