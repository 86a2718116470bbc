// One hand edit of one marker: the front end names the marker by its index in the whole of
// `order` and says where it should go. The request is first turned into a plan (which step,
// from which place), so that the caller knows whether the step will read distances before it
// opens the pairwise store.
#pragma once

#include <cstdint>

#include "engine/edit_group_model.h"
#include "twopoint/pair_table.h"

namespace gae {

enum class MarkerEdit : int32_t {
  kNone,  // invalid request, or one that asks for no change
  kInsideGroup,
  kBetweenGroups,
  kGroupToUnlinked,
  kGroupToDeleted,
  kUnlinkedToGroup,
  kUnlinkedToDeleted,
  kDeletedToGroup,
  kDeletedToUnlinked,
};

struct MarkerMovePlan {
  MarkerEdit edit = MarkerEdit::kNone;
  int32_t source = 0;  // the marker's group; unused when it comes from the unlinked or deleted block
  int32_t place = 0;   // 1-based place inside its group or block
  int32_t target = 0;  // target group, for the steps that end in a group
  int32_t place_mode = 0;
};

// `order_index` is 1..num_markers. `target_group` names a group (1..num_groups), the unlinked
// block (num_groups + 1) or, with any other number, the deleted block: deleting is what a
// request that names nothing does, so a target of 0 deletes. `place_mode` matters inside a
// group (1 up, 2 down, 3 to the end, 4 to the best place) and, as 4, after a marker joins a
// group at its end. Only markers numbered as deleted by the editor (-1) are moved out of the
// deleted block; inconsistent block counts plan nothing.
MarkerMovePlan PlanMarkerMove(const GroupModelArrays& model, int32_t order_index,
                              int32_t target_group, int32_t place_mode);

// Whether carrying out the plan will read distances from the pairwise store.
bool PlanNeedsDistances(const GroupModelArrays& model, const MarkerMovePlan& plan);

// Carries the plan out on the model; a step that needs a distance and has no `table` changes
// nothing.
void ApplyMarkerMove(GroupModelArrays& model, const MarkerMovePlan& plan, const PairTable* table);

}  // namespace gae
