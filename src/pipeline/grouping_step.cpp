#include <cstdio>
#include <optional>

#include "engine/auto_lod.h"
#include "engine/frequency_cap.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"
#include "pipeline/pipeline_steps.h"

namespace gae {

namespace {

std::string LodText(float lod) {
  char text[32];
  std::snprintf(text, sizeof text, "LOD %.1f", static_cast<double>(lod));
  return text;
}

}  // namespace

GroupingLod ChooseGroupingLod(const std::vector<LodTreeRow>& rows, int32_t n, float fallback_lod) {
  // A plateau without a group of a few markers is a set of markers too small to show one.
  const AutoLod choice = ChooseLod(rows, n);
  if (choice.found && choice.groups > 0) return {choice.threshold, true, choice.reason};
  return {fallback_lod, false,
          LodText(fallback_lod) + ": no group of " + std::to_string(FewMarkers(n)) +
              " markers or more holds over a run of thresholds of the LOD tree"};
}

void GroupByLod(const PairTable& pairs, const MapPipelineSettings& settings, const std::vector<int32_t>& anchors,
                MapModel& map, MapPipelineRecord& record) {
  const int32_t n = static_cast<int32_t>(anchors.size());
  AllocateMapState(map, n);
  std::copy(anchors.begin(), anchors.end(), map.anchor.begin());
  record.max_rf = settings.max_rf;
  std::optional<CappedPairs> capped;
  if (settings.max_rf < kNoFrequencyCap) {
    capped.emplace(pairs, n, settings.max_rf);
    record.pairs_capped = capped->Capped();
  }
  const PairTable& table = capped ? capped->Table() : pairs;
  if (settings.lod) {
    record.lod_threshold = *settings.lod;
    record.lod_reason = LodText(*settings.lod) + ", as asked";
  } else {
    const GroupingLod choice =
        ChooseGroupingLod(LodTree(table, n, LodTreeThresholds(kAutoLodLow, kAutoLodHigh, kAutoLodStep)), n,
                          settings.fallback_lod);
    record.lod_chosen = choice.chosen;
    record.lod_threshold = choice.threshold;
    record.lod_reason = choice.reason;
  }
  // The stored first value is minus the LOD.
  GroupByThreshold(table, kByFirstValue, n, -record.lod_threshold, map.anchor.data(), map.group.data());
  RebuildGroupModel(map);
}

}  // namespace gae
