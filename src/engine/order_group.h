// Ordering of one group: its slice of the map order is read into a matrix, ordered by the
// chosen method and given cumulative positions.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/ordering_methods.h"
#include "vocabulary/uniform_stream.h"
#include "twopoint/pair_table.h"

namespace gae {

// The settings of one ordering call, as the caller passes them.
struct OrderingOptions {
  int method = 2;     // 1 nearest neighbour, 2 tour search, 3 insertion around a frame, 4 input order
  int by_what = 2;    // the pair value the methods minimise
  int option = 1;     // tour search: 1 random starts, 2 the present order, 3 best nearest neighbour
  int starts = 5;     // random starts of option 1
  int search = 3;     // local search 1..4
};

// Orders the n markers of group_order (1-based marker numbers) in place and fills
// group_position. group_anchor (n entries, by position) marks the frame of method 3 and the
// markers method 4 puts first.
void OrderGroup(const PairTable& table, const OrderingOptions& options, int32_t n,
                const int32_t* group_anchor, int32_t* group_order, float* group_position,
                UniformStream& random, const StartSink& sink);

// The consensus-map ordering, always on map distance: method 1 searches all markers; method 2
// orders the markers that two or more maps share (group_anchor counts the maps) and inserts
// the others around them. Its search takes a fixed number of random starts and local search,
// whatever the caller passes as ordering parameters.
inline constexpr int kConsensusStarts = 5;
inline constexpr int kConsensusSearch = 3;
void OrderConsensus(const PairTable& table, int method, int32_t n, const int32_t* group_anchor,
                    int32_t* group_order, float* group_position, UniformStream& random,
                    const StartSink& sink);

// Position 1 is 0; each next position adds the map distance (by the run's mapping function)
// from the previous marker, whatever value the order was built on.
void ComputePositions(const PairTable& table, int32_t n, const int32_t* order, float* position);

// order[i] becomes the old order[perm[i]-1].
void ApplyPermutation(const std::vector<int32_t>& perm, int32_t* order);

}  // namespace gae
