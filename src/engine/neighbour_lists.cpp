#include "engine/neighbour_lists.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace gae {

NeighbourLists::NeighbourLists(const TourMatrix& d, int32_t k)
    : m_(d.Size()), k_(std::max(1, k)), usable_(true) {
  const std::size_t slots = static_cast<std::size_t>(m_ + 1) * static_cast<std::size_t>(k_);
  count_.assign(static_cast<std::size_t>(m_ + 1), 0);
  city_.assign(slots, 0);
  value_.assign(slots, 0.0f);
  std::vector<int32_t> others;
  for (int32_t w = 1; w <= m_; ++w) {
    const float* row = d.Row(w);
    others.clear();
    for (int32_t z = 1; z <= m_; ++z) {
      if (z == w) continue;
      if (!std::isfinite(row[z])) usable_ = false;
      scale_ = std::max(scale_, static_cast<double>(std::fabs(row[z])));
      others.push_back(z);
    }
    const auto closer = [row](int32_t a, int32_t b) { return row[a] < row[b] || (row[a] == row[b] && a < b); };
    const int32_t count = std::min<int32_t>(k_, static_cast<int32_t>(others.size()));
    std::partial_sort(others.begin(), others.begin() + count, others.end(), closer);
    count_[static_cast<std::size_t>(w)] = count;
    const std::size_t at = static_cast<std::size_t>(w) * static_cast<std::size_t>(k_);
    for (int32_t q = 0; q < count; ++q) {
      city_[at + static_cast<std::size_t>(q)] = others[static_cast<std::size_t>(q)];
      value_[at + static_cast<std::size_t>(q)] = row[others[static_cast<std::size_t>(q)]];
    }
  }
}

NeighbourLists NeighbourLists::WithDummyCity(float big) const {
  NeighbourLists out;
  const int32_t dummy = m_ + 1;
  out.m_ = dummy;
  out.k_ = k_;
  out.usable_ = usable_ && std::isfinite(big);
  out.scale_ = std::max(scale_, static_cast<double>(std::fabs(big)));
  const std::size_t slots = static_cast<std::size_t>(dummy + 1) * static_cast<std::size_t>(k_);
  out.count_.assign(static_cast<std::size_t>(dummy + 1), 0);
  out.city_.assign(slots, 0);
  out.value_.assign(slots, 0.0f);
  const std::size_t kk = static_cast<std::size_t>(k_);
  for (int32_t w = 1; w <= m_; ++w) {
    // Merge the dummy city into the list at its place; it is the highest number, so it goes
    // after every equal value.
    const std::size_t from = static_cast<std::size_t>(w) * kk, to = static_cast<std::size_t>(w) * kk;
    const int32_t count = count_[static_cast<std::size_t>(w)];
    int32_t q = 0, r = 0;
    bool placed = false;
    while (r < k_ && (q < count || !placed)) {
      if (!placed && (q == count || big < value_[from + static_cast<std::size_t>(q)])) {
        out.city_[to + static_cast<std::size_t>(r)] = dummy;
        out.value_[to + static_cast<std::size_t>(r)] = big;
        placed = true;
      } else {
        out.city_[to + static_cast<std::size_t>(r)] = city_[from + static_cast<std::size_t>(q)];
        out.value_[to + static_cast<std::size_t>(r)] = value_[from + static_cast<std::size_t>(q)];
        ++q;
      }
      ++r;
    }
    out.count_[static_cast<std::size_t>(w)] = r;
  }
  // The dummy city is equally far from all: its nearest are the lowest numbers.
  const int32_t count = std::min(k_, m_);
  for (int32_t q = 0; q < count; ++q) {
    out.city_[static_cast<std::size_t>(dummy) * kk + static_cast<std::size_t>(q)] = q + 1;
    out.value_[static_cast<std::size_t>(dummy) * kk + static_cast<std::size_t>(q)] = big;
  }
  out.count_[static_cast<std::size_t>(dummy)] = count;
  return out;
}

}  // namespace gae
