#include "twopoint/founder_planes.h"

namespace gae {

FounderPlanes::FounderPlanes(const char* types, int64_t num_markers, int64_t num_individuals,
                             int founders)
    : founders_(founders),
      words_((num_individuals + 63) / 64),
      bits_(static_cast<std::size_t>(num_markers * founders * words_), 0) {
  for (int64_t m = 0; m < num_markers; ++m) {
    uint64_t* planes = bits_.data() + m * founders * words_;
    const char* row = types + m * num_individuals;
    for (int64_t i = 0; i < num_individuals; ++i) {
      const int f = row[i] - 'A';
      if (f >= 0 && f < founders) planes[f * words_ + i / 64] |= uint64_t{1} << (i % 64);
    }
  }
}

// Built twice: with the processor's popcount instruction where it has one, and portable.
__attribute__((target_clones("popcnt", "default")))
int64_t FounderPlanes::Count(int64_t first, int a, int64_t second, int b) const {
  const uint64_t* x = Plane(first, a);
  const uint64_t* y = Plane(second, b);
  int64_t count = 0;
  for (int64_t w = 0; w < words_; ++w) count += __builtin_popcountll(x[w] & y[w]);
  return count;
}

__attribute__((target_clones("popcnt", "default")))
void FounderPlanes::CountCells(int64_t first, int64_t second, const uint8_t* cells, int n,
                               float* counts) const {
  for (int k = 0; k < n; ++k) {
    const uint64_t* x = Plane(first, cells[k] / founders_);
    const uint64_t* y = Plane(second, cells[k] % founders_);
    int64_t count = 0;
    for (int64_t w = 0; w < words_; ++w) count += __builtin_popcountll(x[w] & y[w]);
    // Counts stay far below 2^24, so the 32-bit cell holds them exactly.
    counts[k] = static_cast<float>(count);
  }
}

}  // namespace gae
