#include "twopoint/genotype_planes.h"

namespace gae {

namespace {

// Row (or column) of a genotype letter in a pair table, 0-based; -1 for a missing genotype.
int ClassOf(char letter) {
  switch (letter) {
    case 'A': return 0;
    case 'H': case 'D': case 'R': return 1;
    case 'B': return 2;
    default: return -1;
  }
}

}  // namespace

GenotypePlanes::GenotypePlanes(const char* types, int64_t num_markers, int64_t num_individuals)
    : num_markers_(num_markers),
      words_((num_individuals + 63) / 64),
      bits_(static_cast<std::size_t>(num_markers * 3 * words_), 0) {
  for (int64_t m = 0; m < num_markers; ++m) {
    uint64_t* planes = bits_.data() + m * 3 * words_;
    const char* row = types + m * num_individuals;
    for (int64_t i = 0; i < num_individuals; ++i) {
      const int cls = ClassOf(row[i]);
      if (cls >= 0) planes[cls * words_ + i / 64] |= uint64_t{1} << (i % 64);
    }
  }
}

// Built twice: with the processor's popcount instruction where it has one, and portable.
__attribute__((target_clones("popcnt", "default")))
void GenotypePlanes::Count(int64_t row_marker, int64_t column_marker, float cells[9]) const {
  for (int r = 0; r < 3; ++r) {
    const uint64_t* a = Plane(row_marker, r);
    for (int c = 0; c < 3; ++c) {
      const uint64_t* b = Plane(column_marker, c);
      int64_t count = 0;
      for (int64_t w = 0; w < words_; ++w) count += __builtin_popcountll(a[w] & b[w]);
      // Counts stay far below 2^24, so the 32-bit cell holds them exactly.
      cells[3 * r + c] = static_cast<float>(count);
    }
  }
}

}  // namespace gae
