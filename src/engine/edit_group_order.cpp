#include "engine/edit_group_order.h"

#include <algorithm>
#include <utility>

namespace gae {

namespace {

// Exchanges groups h-1 and h (2 <= h <= num_groups, sizes already checked).
void SwapWithPreviousGroup(int32_t h, int32_t num_markers, int32_t* group_size,
                           int32_t* group_status, int32_t* group, int32_t* order,
                           float* position) {
  int32_t start = 0;  // first entry of group h-1, 0-based
  for (int32_t g = 1; g <= h - 2; ++g) start += group_size[g - 1];
  const int32_t before = group_size[h - 2];
  const int32_t both = before + group_size[h - 1];
  // The blocks lie side by side: rotating their joint range puts block h first.
  std::rotate(order + start, order + start + before, order + start + both);
  std::rotate(position + start, position + start + before, position + start + both);
  std::swap(group_size[h - 2], group_size[h - 1]);
  std::swap(group_status[h - 2], group_status[h - 1]);
  for (int32_t i = 0; i < num_markers; ++i) {
    if (group[i] == h - 1) {
      group[i] = h;
    } else if (group[i] == h) {
      group[i] = h - 1;
    }
  }
}

}  // namespace

void MoveGroup(int32_t group_id, int32_t direction, int32_t num_groups, int32_t num_markers,
               int32_t* group_size, int32_t* group_status, int32_t* group, int32_t* order,
               float* position) {
  if (group_id < 1 || group_id > num_groups) return;
  int32_t h;  // the later of the two groups
  if (direction == 1) {
    h = group_id;
  } else if (direction == 2) {
    h = group_id + 1;
  } else {
    return;
  }
  // The first group has no group before it. Moving the last group down would name a group
  // num_groups + 1 that does not exist: refused like any other request for nothing.
  if (h < 2 || h > num_groups) return;
  int64_t mapped = 0;
  for (int32_t g = 0; g < num_groups; ++g) {
    if (group_size[g] < 0) return;
    mapped += group_size[g];
  }
  if (mapped > num_markers) return;
  SwapWithPreviousGroup(h, num_markers, group_size, group_status, group, order, position);
}

void ReverseGroup(int32_t n, int32_t* order, float* position) {
  if (n < 2) return;
  const float last = position[n - 1];
  for (int32_t i = 0; i < n; ++i) position[i] = last - position[i];
  std::reverse(order, order + n);
  std::reverse(position, position + n);
}

}  // namespace gae
