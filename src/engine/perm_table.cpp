#include "engine/rippling.h"

namespace gae {

int32_t PermutationCount(int32_t width) {
  if (width < 0) return 0;
  int32_t count = 1;
  for (int32_t k = 2; k <= width; ++k) count *= k;
  return count;
}

void BuildPermTable(int32_t rows, int32_t width, std::vector<int32_t>& table) {
  table.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(width > 0 ? width : 0), 0);
  if (width < 1 || rows < 1) return;
  auto at = [&](int32_t row, int32_t col) -> int32_t& {  // both 1-based
    return table[static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(width) + static_cast<std::size_t>(col - 1)];
  };
  // Built from the right: after step j the last j columns of the first j! rows hold the
  // permutations of 1..j in lexicographic order. Step j puts each leading value d in turn in
  // front of a copy of those rows, and lifts the copied values of d or more by one.
  at(1, width) = 1;
  int32_t block = 1;  // (j-1)!
  for (int32_t j = 2; j <= width; ++j) {
    const int32_t col = width - j + 1;
    for (int32_t d = 1; d <= j; ++d) {
      for (int32_t r = (d - 1) * block + 1; r <= d * block; ++r) {
        at(r, col) = d;
        if (d > 1)
          for (int32_t c = col + 1; c <= width; ++c) at(r, c) = at(r - (d - 1) * block, c);
      }
    }
    for (int32_t d = 1; d <= j; ++d)
      for (int32_t r = (d - 1) * block + 1; r <= d * block; ++r)
        for (int32_t c = col + 1; c <= width; ++c)
          if (at(r, c) >= d) ++at(r, c);
    block *= j;
  }
}

}  // namespace gae
