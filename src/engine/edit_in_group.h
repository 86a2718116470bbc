// Moving a marker inside one group. Each step works on the group's slice of `order` and
// `position` (n entries, places 1..n) and on the group's status. In an ordered group the
// positions are patched from the distances of the new neighbours only: a gap between two
// markers that stay side by side is kept as it is, whatever ordering or rippling made of it.
#pragma once

#include <cstdint>

#include "twopoint/pair_table.h"

namespace gae {

// Whether a swap in a group of n markers with this status has to read distances: a group
// that is not ordered has no positions to patch, and in a pair of markers the one gap is the
// same pair after the swap.
bool SwapNeedsDistances(int32_t n, int32_t status);

// Exchanges the markers at places k-1 and k, for k in 2..n (otherwise nothing), and in an
// ordered group of three or more rebuilds the positions from the gaps, reading the distances
// of the two new neighbour pairs from `table`. Without a table such a swap does nothing.
void SwapUp(int32_t k, int32_t n, int32_t status, int32_t* order, float* position,
            const PairTable* table);

// Walks the marker at place p (1..n) up and then down the group one place at a time and keeps
// the arrangement with the shortest group length (last position minus first); a tie keeps
// the earlier candidate, so the present place wins over equally long ones. Nothing happens
// in a group that is not ordered.
void BestPlace(int32_t p, int32_t n, int32_t status, int32_t* order, float* position,
               const PairTable* table);

// `place_mode` 1 one place up, 2 one place down, 3 to the end of the group, 4 to the best
// place; any other mode, or p outside 1..n, does nothing.
void MoveInsideGroup(int32_t p, int32_t place_mode, int32_t n, int32_t status, int32_t* order,
                     float* position, const PairTable* table);

}  // namespace gae
