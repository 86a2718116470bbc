#include "engine/edit_marker_move.h"

#include "engine/edit_blocks.h"
#include "engine/edit_in_group.h"

namespace gae {

namespace {

enum class Block { kGroup, kUnlinked, kDeleted };

// Which step moves a marker from `block` to `target`: groups first, then the unlinked block
// (num_groups + 1), and the deleted block for every other number.
MarkerEdit StepFor(const GroupModelArrays& model, Block block, int32_t source, int32_t target) {
  const bool to_group = IsGroupNumber(model, target);
  const bool to_unlinked = target == model.num_groups + 1;
  switch (block) {
    case Block::kGroup:
      if (to_group) return target == source ? MarkerEdit::kInsideGroup : MarkerEdit::kBetweenGroups;
      return to_unlinked ? MarkerEdit::kGroupToUnlinked : MarkerEdit::kGroupToDeleted;
    case Block::kUnlinked:
      if (to_group) return MarkerEdit::kUnlinkedToGroup;
      return to_unlinked ? MarkerEdit::kNone : MarkerEdit::kUnlinkedToDeleted;
    case Block::kDeleted:
      if (to_group) return MarkerEdit::kDeletedToGroup;
      return to_unlinked ? MarkerEdit::kDeletedToUnlinked : MarkerEdit::kNone;
  }
  return MarkerEdit::kNone;
}

}  // namespace

MarkerMovePlan PlanMarkerMove(const GroupModelArrays& model, int32_t order_index,
                              int32_t target_group, int32_t place_mode) {
  MarkerMovePlan plan;
  if (!BlocksAreConsistent(model)) return plan;
  if (order_index < 1 || order_index > model.num_markers) return plan;
  const int32_t m = model.order[order_index - 1];
  if (m < 1 || m > model.num_markers) return plan;
  const int32_t s = model.group[m - 1];

  Block block;
  if (IsGroupNumber(model, s)) {
    block = Block::kGroup;
    plan.place = order_index - GroupStart(model, s);
  } else if (s == 0) {
    block = Block::kUnlinked;
    plan.place = order_index - model.num_mapped;
  } else if (s == kDeletedGroup) {
    block = Block::kDeleted;
    plan.place = order_index - model.num_mapped - model.num_unlinked;
  } else {
    return plan;  // a group number the model does not have, or a foreign deletion mark
  }
  plan.edit = StepFor(model, block, s, target_group);
  plan.source = s;
  plan.target = target_group;
  plan.place_mode = place_mode;
  return plan;
}

bool PlanNeedsDistances(const GroupModelArrays& model, const MarkerMovePlan& plan) {
  const int32_t s = plan.source;
  const int32_t t = plan.target;
  switch (plan.edit) {
    case MarkerEdit::kInsideGroup:
      return SwapNeedsDistances(model.group_size[s - 1], model.group_status[s - 1]);
    case MarkerEdit::kBetweenGroups:
      return RemovalNeedsDistance(model, s, plan.place) || InsertNeedsDistance(model, t);
    case MarkerEdit::kGroupToUnlinked:
    case MarkerEdit::kGroupToDeleted:
      return RemovalNeedsDistance(model, s, plan.place);
    case MarkerEdit::kUnlinkedToGroup:
    case MarkerEdit::kDeletedToGroup:
      return InsertNeedsDistance(model, t);
    default:
      return false;
  }
}

void ApplyMarkerMove(GroupModelArrays& model, const MarkerMovePlan& plan, const PairTable* table) {
  const int32_t s = plan.source;
  const int32_t p = plan.place;
  const int32_t t = plan.target;
  switch (plan.edit) {
    case MarkerEdit::kInsideGroup: {
      const int32_t start = GroupStart(model, s);
      MoveInsideGroup(p, plan.place_mode, model.group_size[s - 1], model.group_status[s - 1],
                      model.order + start, model.position + start, table);
      break;
    }
    case MarkerEdit::kBetweenGroups:
      MoveBetweenGroups(model, s, p, t, plan.place_mode, table);
      break;
    case MarkerEdit::kGroupToUnlinked:
      RemoveToUnlinked(model, s, p, table);
      break;
    case MarkerEdit::kGroupToDeleted:
      RemoveToDeleted(model, s, p, table);
      break;
    case MarkerEdit::kUnlinkedToGroup:
      InsertFromUnlinked(model, p, t, plan.place_mode, table);
      break;
    case MarkerEdit::kUnlinkedToDeleted:
      UnlinkedToDeleted(model, p);
      break;
    case MarkerEdit::kDeletedToGroup:
      InsertFromDeleted(model, p, t, plan.place_mode, table);
      break;
    case MarkerEdit::kDeletedToUnlinked:
      DeletedToUnlinked(model, p);
      break;
    case MarkerEdit::kNone:
      break;
  }
}

}  // namespace gae
