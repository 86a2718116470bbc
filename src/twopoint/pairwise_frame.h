// The frame that every estimating pair-file writer shares (bi-parental, pure-line, clonal): the
// reuse of a complete file, the progress lines and the warning on a suspiciously high
// frequency. The writer brings only the estimate of one pair. The lines go to whatever log the
// calling entry holds.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace gae {

// A frequency above the 32-bit 0.9 is suspicious (alleles switched in one of the two markers):
// the pair is written all the same, with a warning.
inline constexpr float kHighFrequency = 0.9f;

struct PairwiseFrame {
  int record_length = 2;     // 4-byte words per record
  int64_t num_markers = 0;
  int threads = 1;
  // Called once the file is to be computed (never when it is reused), to build what the pairs
  // need (bit planes, class tables). The estimator it returns fills the record of the pair
  // (i, j), i > j, 1-based, and is called from several threads at once. A record's first two
  // words are minus the LOD and the recombination frequency.
  using Estimator = std::function<void(int64_t i, int64_t j, float* record)>;
  std::function<Estimator()> prepare;
  // When given, used in place of `prepare`: the estimator it returns fills the `count`
  // consecutive records of row i from the pair (i, j) on, so that it can take pairs together.
  using RowEstimator = std::function<void(int64_t i, int64_t j, int64_t count, float* records)>;
  std::function<RowEstimator()> prepare_rows;
  // When given: sees each record on the calling thread in record order, after its estimate and
  // before the warning and the write. What must follow record order whatever the threads (a
  // draw from the random stream) goes here.
  std::function<void(int64_t i, int64_t j, float* record)> in_order;
};

// Writes the pairwise file `lrd_name` unless a complete one lies there. Prints 2801, a 2802 warning for each pair whose frequency exceeds 0.9 (the pair is written as
// computed) and 2803 with the minutes taken. False only when the file cannot be written.
bool RunPairwiseFrame(const std::string& lrd_name, const PairwiseFrame& frame);

}  // namespace gae
