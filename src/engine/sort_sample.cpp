#include "engine/sort_sample.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace gae {

namespace {

template <class T, class Less>
void SortWithPermutation(int32_t n, const T* values, T* sorted, int32_t* perm, Less less) {
  if (n < 1) return;
  std::vector<int32_t> index(static_cast<std::size_t>(n));
  std::iota(index.begin(), index.end(), 0);
  std::stable_sort(index.begin(), index.end(),
                   [&](int32_t a, int32_t b) { return less(values[a], values[b]); });
  for (int32_t k = 0; k < n; ++k) {
    sorted[k] = values[index[static_cast<std::size_t>(k)]];
    perm[k] = index[static_cast<std::size_t>(k)] + 1;
  }
}

}  // namespace

void SVRGP(int32_t n, const float* values, float* sorted, int32_t* perm) {
  // NaN sorts as larger than every number and equal to any other NaN: a strict weak order.
  SortWithPermutation(n, values, sorted, perm, [](float a, float b) {
    return !std::isnan(a) && (std::isnan(b) || a < b);
  });
}

void SVIGP(int32_t n, const int32_t* values, int32_t* sorted, int32_t* perm) {
  SortWithPermutation(n, values, sorted, perm, [](int32_t a, int32_t b) { return a < b; });
}

void RNSRI(int32_t count, int32_t population, UniformStream& random, int32_t* sample) {
  if (count < 1 || population < 1) return;
  count = std::min(count, population);
  // A partial Fisher-Yates shuffle: draw k picks uniformly among the population - k numbers
  // not drawn yet and swaps it into place k.
  std::vector<int32_t> pool(static_cast<std::size_t>(population));
  std::iota(pool.begin(), pool.end(), 1);
  for (int32_t k = 0; k < count; ++k) {
    const int32_t left = population - k;
    // The draw lies in (0, 1]; the top end folds into the last slot.
    int32_t pick = static_cast<int32_t>(static_cast<double>(random.Next()) * left);
    pick = std::clamp(pick, 0, left - 1);
    std::swap(pool[static_cast<std::size_t>(k)], pool[static_cast<std::size_t>(k + pick)]);
    sample[k] = pool[static_cast<std::size_t>(k)];
  }
}

}  // namespace gae
