#include <algorithm>
#include <functional>
#include <optional>

#include "engine/auto_lod.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"
#include "pipeline/pipeline_steps.h"

namespace gae {

namespace {


}  // namespace

GroupingLod ChooseGroupingLod(const std::vector<LodTreeRow>& rows, int32_t n, float fallback_lod) {
  const AutoLod choice = ChooseLod(rows, n);
  if (choice.Usable()) return {choice.threshold, true, choice.reason};
  return {fallback_lod, false,
          LodText(fallback_lod) + ": no group of " + std::to_string(FewMarkers(n)) +
              " markers or more holds over a run of thresholds of the LOD tree"};
}

namespace {

bool AnyAnchor(const std::vector<int32_t>& anchors) {
  return std::any_of(anchors.begin(), anchors.end(), [](int32_t a) { return a != 0; });
}

}  // namespace

void GroupByLod(const PairTable& pairs, const MapPipelineSettings& settings, const std::vector<int32_t>& anchors,
                MapModel& map, MapPipelineRecord& record, const std::function<void(int64_t)>& passed) {
  const int32_t n = static_cast<int32_t>(anchors.size());
  AllocateMapState(map, n);
  std::copy(anchors.begin(), anchors.end(), map.anchor.begin());
  record.max_rf = settings.max_rf;
  const std::vector<float> thresholds = LodTreeThresholds(kAutoLodLow, kAutoLodHigh, kAutoLodStep);
  const float lowest = settings.lod ? *settings.lod : std::min(kAutoLodLow, settings.fallback_lod);
  const double total = n > 1 ? static_cast<double>(n) * (n - 1) / 2 : 1.0;
  const auto progress = [&](int64_t records) {
    if (passed) passed(records);
    if (settings.progress) settings.progress("LOD tree", std::min(0.999, static_cast<double>(records) / total));
  };
  // One pass over the pairs, the cap a test on each: the tree's rows and the groups both come
  // from the spanning forest it keeps.
  const LodForest forest = BuildLodForest(pairs, n, lowest, settings.max_rf, 0, progress);
  if (settings.progress) settings.progress("LOD tree", 1.0);
  record.pairs_capped = forest.capped;
  if (settings.lod) {
    record.lod_threshold = *settings.lod;
    record.lod_reason = LodText(*settings.lod) + ", as asked";
  } else {
    const GroupingLod choice = ChooseGroupingLod(LodTreeRows(forest, thresholds), n, settings.fallback_lod);
    record.lod_chosen = choice.chosen;
    record.lod_threshold = choice.threshold;
    record.lod_reason = choice.reason;
  }
  if (AnyAnchor(anchors)) {
    // Anchored markers start their groups and the free ones join the nearest: not a partition
    // of the forest. The stored first value is minus the LOD.
    GroupByThreshold(pairs, kByFirstValue, n, -record.lod_threshold, map.anchor.data(), map.group.data(),
                     settings.max_rf);
  } else {
    const std::vector<int32_t> group = ForestGroups(forest, record.lod_threshold);
    std::copy(group.begin(), group.end(), map.group.begin());
  }
  RebuildGroupModel(map);
}

}  // namespace gae
