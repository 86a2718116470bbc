// The caller's group model as the hand-editing steps see it: plain arrays the front end owns,
// edited in place, and the three block counts. Marker, group and place numbers are 1-based as
// the front end speaks them; the arrays are 0-based in memory.
//
// `order` holds every marker once in three blocks: the groups one after the other (group g
// starting after the sizes of groups 1..g-1), then the unlinked markers, then the deleted
// ones. `position` runs parallel to `order`: a marker's cumulative distance from the first
// marker of its group, 0 throughout a group that has not been ordered yet.
#pragma once

#include <cstdint>

#include "engine/map_state.h"

namespace gae {

// A group whose status is still `kGroupGrouped` has not been ordered: its positions mean
// nothing, and no edit reads a distance for it.
// The number the editing steps give a deleted marker in `group`.
inline constexpr int32_t kDeletedGroup = -1;

struct GroupModelArrays {
  int32_t num_markers = 0;
  int32_t num_groups = 0;
  int32_t num_mapped = 0;    // markers in groups: the first block of `order`
  int32_t num_unlinked = 0;  // `group` 0: the second block
  int32_t num_deleted = 0;   // `group` -1: the last block
  int32_t* group_size = nullptr;    // by group, num_groups entries
  int32_t* group_status = nullptr;  // by group: 1 grouped, 2 ordered, 3 rippled
  int32_t* group = nullptr;         // by marker
  int32_t* order = nullptr;         // marker numbers, num_markers entries
  float* position = nullptr;        // parallel to order
};

// 0-based index in `order` of the first marker of group g (1-based): the sizes of the groups
// before it. The caller has checked g and the sizes.
inline int32_t GroupStart(const GroupModelArrays& model, int32_t g) {
  int32_t start = 0;
  for (int32_t i = 0; i < g - 1; ++i) start += model.group_size[i];
  return start;
}

inline bool IsGroupNumber(const GroupModelArrays& model, int32_t g) {
  return g >= 1 && g <= model.num_groups;
}

// Whether the counts describe a layout that fits the arrays: no negative count or size, the
// three blocks fill `order` exactly and the group sizes fill the first block. The editing
// steps trust nothing else about the caller's arrays, so this is what keeps them in bounds.
bool BlocksAreConsistent(const GroupModelArrays& model);

}  // namespace gae
