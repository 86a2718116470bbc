#include "engine/rippling.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "engine/order_group.h"

namespace gae {

void RippleWindows(int32_t window_size, const TourMatrix& d, std::vector<int32_t>& perm) {
  const int32_t n = static_cast<int32_t>(perm.size());
  const int32_t w = std::min(window_size, n);
  if (w < 1) return;
  const int32_t rows = PermutationCount(w);
  std::vector<int32_t> table;
  BuildPermTable(rows, w, table);

  const std::size_t uw = static_cast<std::size_t>(w);
  std::vector<int32_t> window(uw);
  // The window's own values, and its links to the markers just outside it, looked up once per
  // stop: every row then costs w+1 additions.
  std::vector<float> inner(uw * uw), left(uw), right(uw);
  for (int32_t s = 0; s + w <= n; ++s) {
    std::copy_n(perm.begin() + s, w, window.begin());
    const bool has_left = s >= 1;
    const bool has_right = s + w < n;
    for (std::size_t a = 0; a < uw; ++a) {
      const float* row = d.Row(window[a]);
      for (std::size_t b = 0; b < uw; ++b) inner[a * uw + b] = row[window[b]];
      if (has_left) left[a] = row[perm[static_cast<std::size_t>(s - 1)]];
      if (has_right) right[a] = row[perm[static_cast<std::size_t>(s + w)]];
    }
    // The cost of a row, summed in its order: left link, the links inside, right link.
    float best = std::numeric_limits<float>::infinity();
    int32_t chosen = 0;
    for (int32_t r = 0; r < rows; ++r) {
      const int32_t* seq = &table[static_cast<std::size_t>(r) * uw];
      float cost = has_left ? left[static_cast<std::size_t>(seq[0] - 1)] : 0.0f;
      for (std::size_t k = 0; k + 1 < uw; ++k)
        cost += inner[static_cast<std::size_t>(seq[k] - 1) * uw + static_cast<std::size_t>(seq[k + 1] - 1)];
      if (has_right) cost += right[static_cast<std::size_t>(seq[uw - 1] - 1)];
      if (cost < best) {
        best = cost;
        chosen = r;
      }
    }
    const int32_t* seq = &table[static_cast<std::size_t>(chosen) * uw];
    for (std::size_t k = 0; k < uw; ++k) perm[static_cast<std::size_t>(s) + k] = window[static_cast<std::size_t>(seq[k] - 1)];
  }
}

void RippleGroup(const PairTable& table, int by_what, int32_t window_size, int32_t n, int32_t* order,
                 float* position) {
  const TourMatrix d = ReadGroupMatrix(table, by_what, n, order);
  std::vector<int32_t> perm(static_cast<std::size_t>(n));
  std::iota(perm.begin(), perm.end(), 1);
  RippleWindows(window_size, d, perm);
  ApplyPermutation(perm, order);
  ComputePositions(table, n, order, position);
}

}  // namespace gae
