// Exports of the map engine: grouping, group bookkeeping, ordering and rippling on the caller's
// arrays. Each opens the log of its ToolCode and runs the inner entry with the stage rules of
// that tool; the whole-pipeline drivers call the inner entries directly.
#include "engine/grouping_stage.h"
#include "engine/map_state.h"
#include "engine/ordering_stage.h"
#include "engine/rippling_stage.h"
#include "frame/entry.h"
#include "frame/map_tool_driver.h"
#include "frame/tool_profile.h"
#include "gaengine.h"
#include "input/tool_codes.h"

extern "C" {

GAE_API void MAPGrouping(int ToolCode, int Method, int ByWhat, float Threshold, int NumMarkers,
                         const int* Anchor, int* Group, int* Status) {
  // The consensus tool ignores Anchor (it holds map counts there).
  const bool missing = NumMarkers > 0 && (Group == nullptr || (Anchor == nullptr && ToolCode != gae::kConsensusToolCode));
  if (gae::RefuseMissingArrays(missing, gae::StageLogTool(ToolCode), "DLL MAPGrouping", Status)) return;
  gae::GuardedEntry(gae::StageLogTool(ToolCode), "DLL MAPGrouping", Status, [&] {
    gae::GroupingEntry(gae::ProcessStageContext(gae::StageRulesOf(ToolCode)), Method, ByWhat, Threshold, NumMarkers, Anchor, Group, Status);
  });
}

GAE_API void MapGroupCheck(int NumMarkers, int* NumGroups, int* Group) {
  gae::GuardedEntry("", "DLL MapGroupCheck", nullptr,
                    [&] { gae::MapGroupCheck(NumMarkers, NumGroups, Group); });
}

GAE_API void MAPAnchorMarker(int Marker, int GroupID, int NumGroups, int NumMarkers, int* Anchor) {
  if (Anchor == nullptr) return;
  gae::GuardedEntry("", "DLL MAPAnchorMarker", nullptr,
                    [&] { gae::AnchorMarker(Marker, GroupID, NumGroups, NumMarkers, Anchor); });
}

GAE_API void MAPOrderingAll(int ToolCode, int Method, int ByWhat, int OrderingOption,
                            int OrderingParam1, int OrderingParam2, int NumMarkers, int NumGroups,
                            const int* GroupSize, int* GroupStatus, int* MapState,
                            const int* Anchor, const int* Group, int* Order, float* Position,
                            int* Status) {
  const bool missing =
      (NumGroups > 0 && (GroupSize == nullptr || GroupStatus == nullptr)) ||
      (NumMarkers > 0 && (Anchor == nullptr || Group == nullptr || Order == nullptr || Position == nullptr));
  if (gae::RefuseMissingArrays(missing, gae::StageLogTool(ToolCode), "DLL MAPOrderingAll", Status)) return;
  gae::GuardedEntry(gae::StageLogTool(ToolCode), "DLL MAPOrderingAll", Status, [&] {
    gae::OrderingAllEntry(gae::ProcessStageContext(gae::StageRulesOf(ToolCode)), Method, ByWhat, OrderingOption, OrderingParam1, OrderingParam2,
                          NumMarkers, NumGroups, GroupSize, GroupStatus, MapState, Anchor, Group,
                          Order, Position, Status);
  });
}

GAE_API void MAPOrdering(int ToolCode, int Method, int ByWhat, int OrderingOption,
                         int OrderingParam1, int OrderingParam2, int GroupMarkers,
                         const int* GroupAnchor, int* GroupOrder, float* GroupPosition,
                         int* Status) {
  const bool missing = GroupMarkers >= 2 &&
                       (GroupAnchor == nullptr || GroupOrder == nullptr || GroupPosition == nullptr);
  if (gae::RefuseMissingArrays(missing, gae::StageLogTool(ToolCode), "DLL MAPOrdering", Status)) return;
  gae::GuardedEntry(gae::StageLogTool(ToolCode), "DLL MAPOrdering", Status, [&] {
    gae::OrderingEntry(gae::ProcessStageContext(gae::StageRulesOf(ToolCode)), Method, ByWhat, OrderingOption, OrderingParam1, OrderingParam2,
                       GroupMarkers, GroupAnchor, GroupOrder, GroupPosition, Status);
  });
}

GAE_API void MAPRipplingAll(int ToolCode, int ByWhat, int WindowSize, int NumMarkers, int NumGroups,
                            const int* GroupSize, int* GroupStatus, int* MapState, const int* Group,
                            int* Order, float* Position, int* Status) {
  const bool missing = (NumGroups > 0 && (GroupSize == nullptr || GroupStatus == nullptr)) ||
                       (NumMarkers > 0 && (Order == nullptr || Position == nullptr));
  if (gae::RefuseMissingArrays(missing, gae::StageLogTool(ToolCode), "DLL MAPRipplingAll", Status)) return;
  gae::GuardedEntry(gae::StageLogTool(ToolCode), "DLL MAPRipplingAll", Status, [&] {
    gae::RipplingAllEntry(gae::ProcessStageContext(gae::StageRulesOf(ToolCode)), ByWhat, WindowSize, NumMarkers, NumGroups, GroupSize,
                          GroupStatus, MapState, Group, Order, Position, Status);
  });
}

GAE_API void MAPRippling(int ToolCode, int ByWhat, int WindowSize, int GroupMarkers,
                         int* GroupOrder, float* GroupPosition, int* Status) {
  const bool missing = GroupMarkers > 2 && (GroupOrder == nullptr || GroupPosition == nullptr);
  if (gae::RefuseMissingArrays(missing, gae::StageLogTool(ToolCode), "DLL MAPRippling", Status)) return;
  gae::GuardedEntry(gae::StageLogTool(ToolCode), "DLL MAPRippling", Status, [&] {
    gae::RipplingEntry(gae::ProcessStageContext(gae::StageRulesOf(ToolCode)), ByWhat, WindowSize, GroupMarkers, GroupOrder, GroupPosition, Status);
  });
}

}  // extern "C"
