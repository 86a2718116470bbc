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

namespace {

// The nine counts of a pair: popcounts of the ANDed planes, `words` 64-bit words each.
[[gnu::always_inline]] inline void CountPlanes(const uint64_t* const rows[3], const uint64_t* const cols[3],
                        int64_t words, float cells[9]) {
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      int64_t count = 0;
      for (int64_t w = 0; w < words; ++w) count += __builtin_popcountll(rows[r][w] & cols[c][w]);
      // Counts stay far below 2^24, so the 32-bit cell holds them exactly.
      cells[3 * r + c] = static_cast<float>(count);
    }
  }
}

using CountFunction = void (*)(const uint64_t* const[3], const uint64_t* const[3], int64_t, float[9]);

void CountPortable(const uint64_t* const rows[3], const uint64_t* const cols[3], int64_t words,
                   float cells[9]) {
  CountPlanes(rows, cols, words, cells);
}

#if defined(__x86_64__) || defined(__i386__)
// The same loop built for the processor's popcount instruction. The choice is made once at run
// time by hand rather than through target_clones, whose resolver some toolchains (clang with
// hidden visibility) leave undefined when the library is linked.
__attribute__((target("popcnt"))) void CountPopcnt(const uint64_t* const rows[3],
                                                   const uint64_t* const cols[3], int64_t words,
                                                   float cells[9]) {
  CountPlanes(rows, cols, words, cells);
}

CountFunction ChooseCount() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("popcnt") ? CountPopcnt : CountPortable;
}
#else
CountFunction ChooseCount() { return CountPortable; }
#endif

}  // namespace

void GenotypePlanes::Count(int64_t row_marker, int64_t column_marker, float cells[9]) const {
  static const CountFunction count = ChooseCount();
  const uint64_t* const rows[3] = {Plane(row_marker, 0), Plane(row_marker, 1), Plane(row_marker, 2)};
  const uint64_t* const cols[3] = {Plane(column_marker, 0), Plane(column_marker, 1),
                                   Plane(column_marker, 2)};
  count(rows, cols, words_, cells);
}

}  // namespace gae
