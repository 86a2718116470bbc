#include "twopoint/clonal_planes.h"

#include "twopoint/clonal_two_point.h"

namespace gae {

ClonalPlanes::ClonalPlanes(const char* types, int64_t num_markers, int64_t num_individuals)
    : words_((num_individuals + 63) / 64),
      bits_(static_cast<std::size_t>(num_markers * 4 * words_), 0) {
  for (int64_t m = 0; m < num_markers; ++m) {
    uint64_t* planes = bits_.data() + m * 4 * words_;
    const char* row = types + m * num_individuals;
    for (int64_t i = 0; i < num_individuals; ++i) {
      const int cls = ClonalClass(row[i]);
      if (cls == 0) continue;
      const uint64_t bit = uint64_t{1} << (i % 64);
      const int first = cls <= 2 ? 0 : 1;        // classes 1, 2 carry A; 3, 4 carry B
      const int second = cls % 2 == 1 ? 2 : 3;   // classes 1, 3 carry C; 2, 4 carry D
      planes[first * words_ + i / 64] |= bit;
      planes[second * words_ + i / 64] |= bit;
    }
  }
}

__attribute__((target_clones("popcnt", "default")))
void ClonalPlanes::Count(int64_t first, int64_t second, float cells[16]) const {
  int64_t count[16] = {};
  const uint64_t *a1 = Plane(first, 0), *b1 = Plane(first, 1), *c1 = Plane(first, 2), *d1 = Plane(first, 3);
  const uint64_t *a2 = Plane(second, 0), *b2 = Plane(second, 1), *c2 = Plane(second, 2), *d2 = Plane(second, 3);
  for (int64_t w = 0; w < words_; ++w) {
    // The first parent's pattern over the two markers (rows) and the second's (columns).
    const uint64_t row[4] = {a1[w] & a2[w], a1[w] & b2[w], b1[w] & a2[w], b1[w] & b2[w]};
    const uint64_t column[4] = {c1[w] & c2[w], c1[w] & d2[w], d1[w] & c2[w], d1[w] & d2[w]};
    for (int r = 0; r < 4; ++r)
      for (int c = 0; c < 4; ++c) count[4 * r + c] += __builtin_popcountll(row[r] & column[c]);
  }
  // Counts stay far below 2^24, so the 32-bit cells hold them exactly.
  for (int k = 0; k < 16; ++k) cells[k] = static_cast<float>(count[k]);
}

}  // namespace gae
