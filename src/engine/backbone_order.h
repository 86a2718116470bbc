// A group's order for groups of thousands of markers, in time close to the n^2 of reading its
// pairs: the longest path of a minimum spanning tree as the backbone (markers along a
// chromosome form a chain of short distances, so the tree's longest path runs end to end),
// the markers off it inserted where they lengthen the path least, then local moves among each
// marker's nearest neighbours. No step is cubic; the result does not depend on any random draw.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"
#include "twopoint/pair_table.h"

namespace gae {

// The recombination frequencies of the markers of `order` (1-based, n of them) by local
// number. A pair whose LOD (minus the first value) stays below `min_lod` is not read: in
// multi-parent and clonal designs two close markers can tell nothing of each other (their
// alleles split the founders or parents crosswise), and the estimate of such a pair is noise
// that would join far parts of the chromosome. It takes the shortest way through one of its
// markers' trusted near neighbours instead, at most 0.5.
TourMatrix TrustedFrequencies(const PairTable& pairs, int32_t n, const int32_t* order, float min_lod);

// Each city's `k` nearest other cities of d (local numbers 1..n), nearest first, ties by
// number: near[(i - 1) * k + q]; fewer than k cities leave the rest 0.
std::vector<int32_t> NearestCities(const TourMatrix& d, int32_t k);

// Prim's tree on the whole matrix: parent[i] of local city i (0 for the root, city 1), entry 0
// unused.
std::vector<int32_t> SpanningTreeParents(const TourMatrix& d);

// The path between the two ends of the tree's longest path (by summed value), local numbers.
std::vector<int32_t> LongestTreePath(const TourMatrix& d, const std::vector<int32_t>& parent);

// The open path through all n cities: the backbone above, every other city inserted next to
// one of its nearest placed cities where the path grows least, then ImprovePath.
std::vector<int32_t> BackboneOrder(const TourMatrix& d, int32_t k = 12);

}  // namespace gae
