// Exports of hand editing. They sit outside the run log: no log is opened, no status is set,
// and a request the model cannot carry out simply returns. Nothing may escape to the host, so
// each body runs under a catch-all (the only thing that can throw is the working copy that
// the best-place search allocates).
#include "engine/edit_group_order.h"
#include "engine/edit_marker_move.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "twopoint/pair_store_file.h"

extern "C" {

GAE_API void MAPGroupMove(int GroupID, int Direction, int NumGroups, int NumMarkers,
                          int* GroupSize, int* GroupStatus, int* Group, int* Order,
                          float* Position) {
  if (GroupSize == nullptr || GroupStatus == nullptr || Group == nullptr || Order == nullptr ||
      Position == nullptr) {
    return;
  }
  try {
    gae::MoveGroup(GroupID, Direction, NumGroups, NumMarkers, GroupSize, GroupStatus, Group,
                   Order, Position);
  } catch (...) {
  }
}

GAE_API void MAPGroupReverse(int GroupMarkers, int* GroupOrder, float* GroupPosition) {
  if (GroupOrder == nullptr || GroupPosition == nullptr) return;
  gae::ReverseGroup(GroupMarkers, GroupOrder, GroupPosition);
}

GAE_API void MAPGroupMarkerMove(int OrderIndex, int TargetGroup, int PlaceMode, int NumGroups,
                                int NumMarkers, int* NumMapped, int* NumUnlinked, int* NumDeleted,
                                int* GroupSize, int* GroupStatus, int* Group, int* Order,
                                float* Position) {
  if (NumMapped == nullptr || NumUnlinked == nullptr || NumDeleted == nullptr) return;
  gae::GroupModelArrays model{NumMarkers, NumGroups, *NumMapped, *NumUnlinked, *NumDeleted,
                              GroupSize, GroupStatus, Group, Order, Position};
  const gae::MarkerMovePlan plan = gae::PlanMarkerMove(model, OrderIndex, TargetGroup, PlaceMode);
  if (plan.edit == gae::MarkerEdit::kNone) return;
  try {
    // The store is opened for the one step that reads it and closed on the way out. With no
    // store in this process, a step that must measure a new neighbour changes nothing.
    gae::PairStoreFile store;
    const gae::PairTable* table = nullptr;
    if (gae::PlanNeedsDistances(model, plan)) {
      if (!gae::OpenProcessPairStore(store)) return;
      table = &store.Table();
    }
    gae::ApplyMarkerMove(model, plan, table);
  } catch (...) {
    // A refused allocation in the best-place search comes after the marker has joined its
    // group: the counts below still describe the arrays as they now stand.
  }
  *NumMapped = model.num_mapped;
  *NumUnlinked = model.num_unlinked;
  *NumDeleted = model.num_deleted;
}

}  // extern "C"
