#include "engine/rippling_stage.h"

#include <vector>

#include "engine/map_state.h"
#include "engine/rippling.h"
#include "engine/stage_support.h"
#include "vocabulary/cpu_clock.h"
#include "vocabulary/frame_codes.h"

namespace gae {

namespace {

// The consensus tool does not bound its window, but a window of no column is meaningless and
// one of 13 or more (6.2 billion orders at every stop) would run for hours: both are refused.
constexpr int kLargestCountableWindow = 12;

int RipplingOptionError(const StageRules& rules, int by_what, int window, int* value) {
  if (rules.consensus) {
    if (by_what != 3) return *value = by_what, kRipplingByWhatConsensus;
    if (window < 1 || window > kLargestCountableWindow) return *value = window, kRipplingWindow;
    return 0;
  }
  if (by_what < 1 || by_what > 3) return *value = by_what, kRipplingByWhat;
  if (window < 2 || window > 8) return *value = window, kRipplingWindow;
  return 0;
}

}  // namespace

void RipplingEntry(const StageContext& context, int ByWhat, int WindowSize, int GroupMarkers,
                   int* GroupOrder, float* GroupPosition, int* Status) {
  int unused_status = 0;  // a caller without a status still gets the work done
  if (Status == nullptr) Status = &unused_status;
  *Status = 0;
  int value = 0;
  if (const int code = RipplingOptionError(context.rules, ByWhat, WindowSize, &value)) {
    RejectOption(code, value, Status);
    return;
  }
  if (GroupMarkers <= 2) return;
  PairStoreFile store;
  if (!OpenStageStore(store, context.store, Status)) return;
  RippleGroup(store.Table(), ByWhat, WindowSize, GroupMarkers, GroupOrder, GroupPosition);
}

void RipplingAllEntry(const StageContext& context, int ByWhat, int WindowSize, int NumMarkers,
                      int NumGroups, const int* GroupSize, int* GroupStatus, int* MapState,
                      const int* /*Group*/, int* Order, float* Position, int* Status) {
  int unused_status = 0;  // a caller without a status still gets the work done
  if (Status == nullptr) Status = &unused_status;
  *Status = 0;
  int value = 0;
  const int rejected = RipplingOptionError(context.rules, ByWhat, WindowSize, &value);
  const GroupSlices slices(NumMarkers, NumGroups, GroupSize);
  bool needs_store = false;
  for (int g = 0; g < NumGroups && rejected == 0; ++g)
    needs_store |= GroupStatus[g] > kGroupGrouped && GroupSize[g] > 2 && slices.Fits(g);
  PairStoreFile store;
  if (needs_store && !OpenStageStore(store, context.store, Status)) return;

  for (int g = 0; g < NumGroups; ++g) {
    PrintStageLine(kRipplingRunning, g + 1);
    if (GroupStatus[g] <= kGroupGrouped || !slices.Fits(g)) continue;
    const float t1 = CpuSeconds();
    *Status = 0;
    if (rejected != 0) {
      RejectOption(rejected, value, Status);
    } else if (GroupSize[g] > 2) {
      const std::size_t at = slices.Start(g);
      RippleGroup(store.Table(), ByWhat, WindowSize, GroupSize[g], Order + at, Position + at);
    }
    if (*Status == 0) GroupStatus[g] = kGroupRippled;
    PrintStageTime(t1, CpuSeconds());
  }
  if (MapState != nullptr && AllGroupsAt(NumGroups, GroupStatus, kGroupRippled)) *MapState = kMapRippled;
}

}  // namespace gae
