#include "engine/linkage_rule.h"

#include <algorithm>
#include <cmath>

#include "engine/grouping.h"

namespace gae {

std::vector<LodTreeRow> LinkageTree(const PairTable& table, int32_t n, float max_rf, float low,
                                    float high, float step) {
  const std::vector<float> thresholds = LodTreeThresholds(low, high, step);
  return LodTree(table, n, thresholds, false, 0, max_rf);
}

LinkageRule ResolveLinkageRule(const PairTable& table, int32_t n, float fixed_lod, float max_rf,
                               AutoLod* choice) {
  LinkageRule rule;
  rule.max_rf = max_rf;
  if (!std::isnan(fixed_lod)) {
    rule.min_lod = fixed_lod;
    return rule;
  }
  const AutoLod chosen = ChooseLod(LinkageTree(table, n, max_rf, kAutoLodLow, kAutoLodHigh, kAutoLodStep), n);
  if (chosen.Usable()) rule.min_lod = chosen.threshold;
  if (choice != nullptr) *choice = chosen;
  return rule;
}

std::vector<int32_t> LinkageGroups(const PairTable& table, int32_t n, const LinkageRule& rule,
                                   const int32_t* anchors) {
  if (n < 1) return {};
  std::vector<int32_t> none;
  if (anchors == nullptr) {
    none.assign(static_cast<std::size_t>(n), 0);
    anchors = none.data();
  }
  std::vector<int32_t> group(static_cast<std::size_t>(n), 0);
  // The stored first value is minus the LOD.
  GroupByThreshold(table, kByFirstValue, n, -rule.min_lod, anchors, group.data(), rule.max_rf);
  return group;
}

}  // namespace gae
