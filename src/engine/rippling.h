// Rippling: a window of consecutive markers slides once along an ordered group, and at each
// stop every permutation of the window is tried in place; the cheapest (counting the links to
// the markers outside the window) is kept. Exhaustive inside the window, one pass only.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"
#include "twopoint/pair_table.h"

namespace gae {

// One sliding pass over `perm` (local numbers, n entries) with windows of the smaller of
// window_size and n. The permutations of a window are walked in lexicographic order without a
// table, so memory does not grow with the window; time grows as its factorial. Ties keep the
// present order (the identity comes first).
void RippleWindows(int32_t window_size, const TourMatrix& d, std::vector<int32_t>& perm);

// Ripples the n markers of `order` (1-based marker numbers) in place by `by_what` and
// recomputes their positions in map distance.
void RippleGroup(const PairTable& table, int by_what, int32_t window_size, int32_t n, int32_t* order,
                 float* position);

}  // namespace gae
