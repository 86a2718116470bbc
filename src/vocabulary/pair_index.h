#pragma once

#include <cstdint>

namespace gae {

// Position of the unordered pair (i, j) of 1-based marker numbers in a lower-triangular store
// without diagonal, row by row: (2,1) is 1, (3,1) 2, (3,2) 3, (4,1) 4, ... The arguments may
// come in either order; i == j is not a pair. This is the record number of the pairwise file
// and the index of every packed triangular matrix of the map engine.
constexpr int64_t GroupPairIndex(int64_t i, int64_t j) {
  const int64_t a = i > j ? i : j;
  const int64_t b = i > j ? j : i;
  return (a - 1) * (a - 2) / 2 + b;
}

// Number of unordered pairs of n markers: n(n-1)/2.
constexpr int64_t PairCount(int64_t n) { return n * (n - 1) / 2; }

}  // namespace gae
