// For each city of a tour matrix, its nearest cities, nearest first: what lets a pass of the
// local searches look only at moves that can pay off. A 2-opt move (or one step of a 3-opt
// move) gains only if a new edge is shorter than the old edge beside it, so a pass asks, for a
// city and a radius, which cities lie closer than that radius. The lists hold the k nearest
// by (value, city number); beyond them a city's whole row is scanned, so the answer is exact
// whatever k is.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"

namespace gae {

class NeighbourLists {
 public:
  static constexpr int32_t kDefaultLength = 64;

  NeighbourLists() = default;
  NeighbourLists(const TourMatrix& d, int32_t k = kDefaultLength);

  // The lists of the matrix with city m+1 added at the value `big` from every city (the dummy
  // city of the searches that look for an open path through a closed tour).
  NeighbourLists WithDummyCity(float big) const;

  int32_t Size() const { return m_; }
  // False when a value is not finite: the rounding bounds that justify skipping moves assume
  // finite sums, so the searches then evaluate every move.
  bool Usable() const { return usable_; }
  // The largest magnitude among the values: the scale of the rounding error of a gain.
  double Scale() const { return scale_; }

  // Calls f(z) for every city z != w with d(w, z) < radius, some of them possibly twice.
  template <class F>
  void ForEachCloser(const TourMatrix& d, int32_t w, double radius, F&& f) const {
    const std::size_t at = static_cast<std::size_t>(w) * static_cast<std::size_t>(k_);
    const int32_t count = count_[static_cast<std::size_t>(w)];
    if (count < m_ - 1 && count > 0 && static_cast<double>(value_[at + static_cast<std::size_t>(count - 1)]) < radius) {
      const float* row = d.Row(w);
      for (int32_t z = 1; z <= m_; ++z)
        if (z != w && static_cast<double>(row[z]) < radius) f(z);
      return;
    }
    for (int32_t q = 0; q < count; ++q) {
      if (!(static_cast<double>(value_[at + static_cast<std::size_t>(q)]) < radius)) return;
      f(city_[at + static_cast<std::size_t>(q)]);
    }
  }

 private:
  int32_t m_ = 0, k_ = 0;
  bool usable_ = false;
  double scale_ = 0.0;
  std::vector<int32_t> count_;  // by city, entry 0 unused
  std::vector<int32_t> city_;   // k entries a city, nearest first
  std::vector<float> value_;
};

}  // namespace gae
