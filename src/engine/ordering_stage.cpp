#include "engine/ordering_stage.h"

#include <vector>

#include "engine/map_state.h"
#include "engine/order_group.h"
#include "engine/stage_support.h"
#include "vocabulary/cpu_clock.h"
#include "vocabulary/frame_codes.h"

namespace gae {

namespace {

// The code that rejects these options (value in *value), or 0.
int OrderingOptionError(const StageRules& rules, int method, int by_what, int* value) {
  if (rules.consensus) {
    if (method < 1 || method > 2) return *value = method, kOrderingMethodConsensus;
    if (by_what != 3) return *value = by_what, kOrderingByWhatConsensus;
    return 0;
  }
  if (method < 1 || method > 4) return *value = method, kOrderingMethod;
  if (by_what < 1 || by_what > 3) return *value = by_what, kOrderingByWhat;
  return 0;
}

// One group whose options passed, on an open store.
void OrderOneGroup(const PairTable& table, const StageContext& context,
                   const OrderingOptions& options, int n, const int* anchor, int* order,
                   float* position) {
  const StartSink to_log = [&](const StartRecord& record) {
    if (context.log_only) context.log_only(StartLine(record));
  };
  UniformStream local;  // a caller without a stream of its own starts from the default seeds
  UniformStream& random = context.random != nullptr ? *context.random : local;
  if (context.rules.consensus) {
    OrderConsensus(table, options.method, n, anchor, order, position, random, to_log);
  } else {
    OrderGroup(table, options, n, anchor, order, position, random, to_log);
  }
}

}  // namespace

void OrderingEntry(const StageContext& context, int Method, int ByWhat, int OrderingOption,
                   int OrderingParam1, int OrderingParam2, int GroupMarkers, const int* GroupAnchor,
                   int* GroupOrder, float* GroupPosition, int* Status) {
  int unused_status = 0;  // a caller without a status still gets the work done
  if (Status == nullptr) Status = &unused_status;
  *Status = 0;
  if (GroupMarkers < 2) return;
  int value = 0;
  if (const int code = OrderingOptionError(context.rules, Method, ByWhat, &value)) {
    RejectOption(code, value, Status);
    return;
  }
  PairStoreFile store;
  if (!OpenStageStore(store, context.store, Status)) return;
  const OrderingOptions options{Method, ByWhat, OrderingOption, OrderingParam1, OrderingParam2};
  OrderOneGroup(store.Table(), context, options, GroupMarkers, GroupAnchor, GroupOrder, GroupPosition);
}

void OrderingAllEntry(const StageContext& context, int Method, int ByWhat, int OrderingOption,
                      int OrderingParam1, int OrderingParam2, int NumMarkers, int NumGroups,
                      const int* GroupSize, int* GroupStatus, int* MapState, const int* Anchor,
                      const int* Group, int* Order, float* Position, int* Status) {
  int unused_status = 0;  // a caller without a status still gets the work done
  if (Status == nullptr) Status = &unused_status;
  *Status = 0;
  int value = 0;
  const int rejected = OrderingOptionError(context.rules, Method, ByWhat, &value);
  const GroupSlices slices(NumMarkers, NumGroups, GroupSize);

  bool needs_store = false;
  for (int g = 0; g < NumGroups && rejected == 0; ++g) needs_store |= GroupSize[g] >= 2 && slices.Fits(g);
  PairStoreFile store;
  if (needs_store && !OpenStageStore(store, context.store, Status)) return;

  // Each group's anchors by ascending marker number; entry k goes with position k of the
  // group's slice, whatever order the slice is in now.
  std::vector<std::vector<int>> anchors(NumGroups > 0 ? static_cast<std::size_t>(NumGroups) : 0);
  for (int i = 0; i < NumMarkers; ++i)
    if (Group[i] >= 1 && Group[i] <= NumGroups) anchors[static_cast<std::size_t>(Group[i] - 1)].push_back(Anchor[i]);

  const OrderingOptions options{Method, ByWhat, OrderingOption, OrderingParam1, OrderingParam2};
  for (int g = 0; g < NumGroups; ++g) {
    PrintStageLine(kOrderingRunning, g + 1);
    const int n = GroupSize[g];
    if (n < 2) {
      GroupStatus[g] = kGroupOrdered;
      continue;
    }
    if (!slices.Fits(g)) continue;
    const float t1 = CpuSeconds();
    std::vector<int>& anchor = anchors[static_cast<std::size_t>(g)];
    anchor.resize(static_cast<std::size_t>(n), 0);  // a model out of step with its groups
    *Status = 0;
    if (rejected != 0) {
      RejectOption(rejected, value, Status);
    } else {
      const std::size_t at = slices.Start(g);
      OrderOneGroup(store.Table(), context, options, n, anchor.data(), Order + at, Position + at);
    }
    if (*Status == 0) GroupStatus[g] = kGroupOrdered;
    PrintStageTime(t1, CpuSeconds());
  }
  if (MapState != nullptr && AllGroupsAt(NumGroups, GroupStatus, kGroupOrdered)) *MapState = kMapOrdered;
}

}  // namespace gae
