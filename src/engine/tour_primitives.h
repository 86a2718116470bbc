// Tours over the local numbers 1..n of a group and the measures that judge them. A tour is a
// vector of n local numbers, tour[0] first; read as a cycle, its last city links back to the
// first (the closing edge). Values may be negative (minus LOD scores), so nothing here assumes
// a positive distance.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"

namespace gae {

using Tour = std::vector<int32_t>;
// Successor list of a cycle, indexed by local number (entry 0 unused): next[t(i)] = t(i+1).
using Successors = std::vector<int32_t>;

// Greedy construction from `start`: each step goes to the nearest city not yet visited. Among
// equal distances the later candidate in the working array wins (the comparison is "not
// greater"), the array being in swapped order. When no candidate compares at all (NaN values
// only), the first remaining candidate is taken.
void NearestNeighbourTour(const TourMatrix& d, int32_t start, Tour& tour);

// Sum of all n edges, closing edge first, and the longest of them (the first met in that order).
void ClosedLength(const TourMatrix& d, const Tour& tour, float* total, float* longest);
// Sum of the n-1 path edges, and the closing edge separately.
void OpenLength(const TourMatrix& d, const Tour& tour, float* total, float* closing);
// Sum over all pairs (i > j) of the tour of d(tour(i), tour(j)) / (i-j)^2, in that order: every
// pair counts, far pairs less. The criterion of ordering by nearest neighbour alone.
float PairWeightedSum(const TourMatrix& d, const Tour& tour);
// Rotates the cycle so that its longest edge becomes the closing edge and leaves the path. In
// ties the closing edge keeps the cut, then the first of the others.
void RotateToLongestEdge(const TourMatrix& d, Tour& tour);

Successors BuildSuccessors(const Tour& tour);
// The cycle read from local number 1.
Tour TourFromCityOne(const Successors& next, int32_t m);
// The pointer walk that turns a stretch around: repeat t = next(p), next(p) = q, q = p, p = t
// until p is `stop`.
void Reverse(Successors& next, int32_t p, int32_t q, int32_t stop);

// The four longest edges (i, next(i)) of the cycle over cities 1..n, longest first, with their
// pair indexes; fewer when n is smaller, the rest 0. Equal lengths keep city order.
void LongestEdges(const TourMatrix& d, const Successors& next, float lengths[4], int64_t edges[4]);
// For the seven cases of a 3-opt step removing edges e12, e34, e56 (pair indexes): the longest
// edge of the old cycle that survives. Cases 1 to 3 remove two edges, 4 to 7 all three.
void RemainingLongest(int64_t e12, int64_t e34, int64_t e56, const float lengths[4],
                      const int64_t edges[4], float result[7]);

}  // namespace gae
