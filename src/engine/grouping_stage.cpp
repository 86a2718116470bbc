#include "engine/grouping_stage.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "engine/grouping.h"
#include "engine/stage_support.h"
#include "vocabulary/cpu_clock.h"
#include "vocabulary/frame_codes.h"

namespace gae {

namespace {

int32_t RoundedCount(float threshold) {
  const double rounded = std::round(static_cast<double>(threshold));  // halves away from zero
  if (std::isnan(rounded)) return 0;
  if (rounded >= std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (rounded <= std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(rounded);
}

// Whether the method reads pair values at all.
bool NeedsStore(const StageRules& rules, int method) {
  return rules.consensus ? method == 2 : (method == 1 || method == 2);
}

// The code that rejects these options (value in *value), or 0.
int GroupingOptionError(const StageRules& rules, int method, int by_what, int* value) {
  if (rules.consensus) {
    if (by_what != 3) return *value = by_what, kGroupingByWhatConsensus;
    return 0;
  }
  if ((method == 1 || method == 2) && (by_what < 1 || by_what > 3)) return *value = by_what, kGroupingByWhat;
  if (method < 1 || method > 3) return *value = method, kGroupingMethod;
  return 0;
}

}  // namespace

void GroupingEntry(const StageContext& context, int Method, int ByWhat, float Threshold, int NumMarkers,
                   const int* Anchor, int* Group, int* Status) {
  int unused_status = 0;  // a caller without a status still gets the work done
  if (Status == nullptr) Status = &unused_status;
  *Status = 0;
  const StageRules& rules = context.rules;
  PrintStageLine(kGroupingRunning);
  const float t1 = CpuSeconds();
  int value = 0;
  if (const int code = GroupingOptionError(rules, Method, ByWhat, &value)) {
    RejectOption(code, value, Status);
    return;
  }
  PairStoreFile store;
  if (NeedsStore(rules, Method) && !OpenStageStore(store, context.store, Status)) return;
  const PairTable& table = store.Table();
  const int32_t n = NumMarkers > 0 ? NumMarkers : 0;
  std::vector<int32_t> group(Group, Group + n);
  if (rules.consensus) {
    if (Method == 1) {
      group.assign(group.size(), 1);
    } else if (Method == 2) {
      const std::vector<int32_t> no_anchor(group.size(), 0);
      GroupByThreshold(table, kByDistance, n, Threshold, no_anchor.data(), group.data());
    }
  } else if (Method == 1) {
    // A LOD threshold is compared with the stored minus-LOD value.
    const float threshold = ByWhat == kByFirstValue ? -Threshold : Threshold;
    GroupByThreshold(table, ByWhat, n, threshold, Anchor, group.data());
  } else if (Method == 2) {
    GroupToCount(table, ByWhat, n, RoundedCount(Threshold), Anchor, group.data());
  } else {
    GroupByAnchors(n, Anchor, group.data());
  }
  std::copy(group.begin(), group.end(), Group);
  const float t2 = CpuSeconds();
  PrintStageLine(kGroupingDone);
  PrintStageTime(t1, t2);
}

}  // namespace gae
