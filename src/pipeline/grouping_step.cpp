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
    const std::vector<LodTreeRow> rows =
        LodTree(table, n, LodTreeThresholds(kAutoLodLow, kAutoLodHigh, kAutoLodStep));
    // A plateau without a group of a few markers is a set of markers too small to show one.
    const AutoLod choice = ChooseLod(rows, n);
    record.lod_chosen = choice.found && choice.groups > 0;
    record.lod_threshold = record.lod_chosen ? choice.threshold : settings.fallback_lod;
    record.lod_reason = record.lod_chosen ? choice.reason
                        : LodText(settings.fallback_lod) + ": no group of " + std::to_string(FewMarkers(n)) +
                              " markers or more holds over a run of thresholds of the LOD tree";
  }
  // The stored first value is minus the LOD.
  GroupByThreshold(table, kByFirstValue, n, -record.lod_threshold, map.anchor.data(), map.group.data());
  RebuildGroupModel(map);
}

}  // namespace gae
