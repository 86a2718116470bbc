#include "engine/tour_matrix.h"

#include <limits>

namespace gae {

TourMatrix::TourMatrix(int32_t n) : n_(n > 0 ? n : 0) {
  const std::size_t side = static_cast<std::size_t>(n_) + 1;
  cells_.assign(side * side, 0.0f);
}

float TourMatrix::LargestEntry() const {
  float largest = -std::numeric_limits<float>::infinity();
  for (int32_t i = 2; i <= n_; ++i) {
    const float* row = Row(i);
    for (int32_t j = 1; j < i; ++j)
      if (row[j] > largest) largest = row[j];
  }
  return largest;
}

TourMatrix TourMatrix::WithDummyCity(float big) const {
  TourMatrix out(n_ + 1);
  for (int32_t i = 2; i <= n_; ++i)
    for (int32_t j = 1; j < i; ++j) out.Set(i, j, (*this)(i, j));
  for (int32_t j = 1; j <= n_; ++j) out.Set(n_ + 1, j, big);
  return out;
}

TourMatrix TourMatrix::Select(const std::vector<int32_t>& cities) const {
  const int32_t m = static_cast<int32_t>(cities.size());
  TourMatrix out(m);
  for (int32_t i = 2; i <= m; ++i)
    for (int32_t j = 1; j < i; ++j)
      out.Set(i, j, (*this)(cities[static_cast<std::size_t>(i - 1)], cities[static_cast<std::size_t>(j - 1)]));
  return out;
}

TourMatrix ReadGroupMatrix(const PairTable& table, int by_what, int32_t n, const int32_t* order) {
  TourMatrix d(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) d.Set(i, j, table.Value(by_what, order[i - 1], order[j - 1]));
  return d;
}

}  // namespace gae
