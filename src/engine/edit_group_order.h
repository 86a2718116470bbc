// Hand edits of whole groups: moving a group one place along the map and turning one round.
// Positions are relative to each group's first marker, so neither edit reads a distance.
#pragma once

#include <cstdint>

namespace gae {

// `direction` 1 exchanges group `group_id` with the group before it, 2 with the group after
// it; any other direction, a group outside 1..num_groups, or no neighbour on that side
// changes nothing. The two groups swap their blocks of `order` and `position`, their sizes
// and statuses, and their numbers in `group`. Sizes that do not fit in num_markers are
// refused as a whole.
void MoveGroup(int32_t group_id, int32_t direction, int32_t num_groups, int32_t num_markers,
               int32_t* group_size, int32_t* group_status, int32_t* group, int32_t* order,
               float* position);

// Turns a group of n markers round: the last marker comes first and each position p becomes
// T - p, T being the old last position. A group of fewer than two markers is left alone.
void ReverseGroup(int32_t n, int32_t* order, float* position);

}  // namespace gae
