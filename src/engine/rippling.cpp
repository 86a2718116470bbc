#include "engine/rippling.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>

#include "engine/order_group.h"

namespace gae {

namespace {

// The permutations of one window, walked depth first with the free entries tried in ascending
// order: that is lexicographic order, the identity first, with no table. The cost of a row is
// summed left to right (left link, the links inside, right link), so a prefix's partial sum is
// shared by every row that starts with it and each row still gets exactly the 32-bit sum of
// its own terms in its own order. Memory is a few vectors of the window's width.
class WindowWalk {
 public:
  static constexpr std::size_t kWidest = 64;  // the free entries are the bits of one word

  WindowWalk(std::size_t width, const std::vector<float>& inner, const std::vector<float>* left,
             const std::vector<float>* right)
      : w_(width), inner_(inner), left_(left), right_(right), row_(width), best_row_(width) {
    std::iota(best_row_.begin(), best_row_.end(), std::size_t{0});
  }

  // The cheapest row; on equal costs the first in lexicographic order.
  const std::vector<std::size_t>& Cheapest() {
    const uint64_t all = w_ == kWidest ? ~uint64_t{0} : (uint64_t{1} << w_) - 1;
    for (uint64_t rest = all; rest != 0; rest &= rest - 1) {
      const std::size_t first = static_cast<std::size_t>(std::countr_zero(rest));
      Place(0, first, all & ~(uint64_t{1} << first), left_ != nullptr ? (*left_)[first] : 0.0f);
    }
    return best_row_;
  }

 private:
  void Place(std::size_t depth, std::size_t entry, uint64_t free, float cost) {
    row_[depth] = entry;
    if (free == 0) {
      if (right_ != nullptr) cost += (*right_)[entry];
      if (cost < best_) {
        best_ = cost;
        best_row_ = row_;
      }
      return;
    }
    const float* links = &inner_[entry * w_];
    for (uint64_t rest = free; rest != 0; rest &= rest - 1) {
      const std::size_t next = static_cast<std::size_t>(std::countr_zero(rest));
      Place(depth + 1, next, free & ~(uint64_t{1} << next), cost + links[next]);
    }
  }

  std::size_t w_;
  const std::vector<float>& inner_;
  const std::vector<float>* left_;
  const std::vector<float>* right_;
  std::vector<std::size_t> row_, best_row_;
  float best_ = std::numeric_limits<float>::infinity();
};

}  // namespace

void RippleWindows(int32_t window_size, const TourMatrix& d, std::vector<int32_t>& perm) {
  const int32_t n = static_cast<int32_t>(perm.size());
  const int32_t w = std::min(window_size, n);
  // No entry passes a window above 12; one beyond a word of free entries is left alone.
  if (w < 1 || static_cast<std::size_t>(w) > WindowWalk::kWidest) return;
  const std::size_t uw = static_cast<std::size_t>(w);
  std::vector<int32_t> window(uw);
  // The window's own values, and its links to the markers just outside it, looked up once per
  // stop.
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
    WindowWalk walk(uw, inner, has_left ? &left : nullptr, has_right ? &right : nullptr);
    const std::vector<std::size_t>& chosen = walk.Cheapest();
    for (std::size_t k = 0; k < uw; ++k) perm[static_cast<std::size_t>(s) + k] = window[chosen[k]];
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
