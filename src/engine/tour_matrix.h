// The pair values of one group in memory, by local number 1..n: what ordering and rippling
// search on. The group is read from the pairwise store once; every search afterwards costs a
// memory read per value.
//
// The matrix is kept square (symmetric, diagonal 0) rather than packed: the searches walk a
// row of one city against many others, and a square row is contiguous.
#pragma once

#include <cstdint>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae {

class TourMatrix {
 public:
  TourMatrix() = default;
  explicit TourMatrix(int32_t n);  // all values 0

  int32_t Size() const { return n_; }
  float operator()(int32_t i, int32_t j) const { return cells_[Cell(i, j)]; }
  // Row i, indexed by local number: Row(i)[j] is the value of (i, j).
  const float* Row(int32_t i) const { return &cells_[Cell(i, 0)]; }
  void Set(int32_t i, int32_t j, float value) {
    cells_[Cell(i, j)] = value;
    cells_[Cell(j, i)] = value;
  }

  // The largest value among the pairs, NaN ignored; -infinity when there is none.
  float LargestEntry() const;
  // This matrix with city n+1 added at the same value `big` from every city.
  TourMatrix WithDummyCity(float big) const;
  // The matrix of a selection: local number k of the result is local number cities[k-1] here.
  TourMatrix Select(const std::vector<int32_t>& cities) const;

 private:
  std::size_t Cell(int32_t i, int32_t j) const {
    return static_cast<std::size_t>(i) * static_cast<std::size_t>(n_ + 1) + static_cast<std::size_t>(j);
  }
  int32_t n_ = 0;
  std::vector<float> cells_;
};

// The values of the markers at positions 1..n of a group's order (1-based marker numbers in
// order[0..n-1]), selected by `by_what`: local number k is the marker at position k. The pairs
// are read for i from 1 to n and j from 1 to i-1.
TourMatrix ReadGroupMatrix(const PairTable& table, int by_what, int32_t n, const int32_t* order);

}  // namespace gae
