#include "engine/linkage_rule.h"

#include <algorithm>
#include <cmath>

#include "engine/frequency_cap.h"

namespace gae {

std::vector<LodTreeRow> LinkageTree(const PairTable& table, int32_t n, float max_rf, float low,
                                    float high, float step) {
  const std::vector<float> thresholds = LodTreeThresholds(low, high, step);
  return LodTree(CappedPairs(table, n, max_rf).Table(), n, thresholds);
}

int32_t PlateauGroupSize(int32_t n) { return std::max(3, n / 100); }

AutoLinkageLod ChooseLinkageLod(const std::vector<LodTreeRow>& rows, int32_t n) {
  AutoLinkageLod choice;
  const LodPlateau plateau = LongestPlateau(rows, PlateauGroupSize(n));
  if (plateau.first < 0) return choice;
  choice.found = true;
  choice.threshold = rows[static_cast<std::size_t>(plateau.first)].threshold;
  choice.run_to = rows[static_cast<std::size_t>(plateau.last)].threshold;
  choice.groups = plateau.groups;
  return choice;
}

LinkageRule ResolveLinkageRule(const PairTable& table, int32_t n, float fixed_lod, float max_rf,
                               AutoLinkageLod* choice) {
  LinkageRule rule;
  rule.max_rf = max_rf;
  if (!std::isnan(fixed_lod)) {
    rule.min_lod = fixed_lod;
    return rule;
  }
  const AutoLinkageLod chosen =
      ChooseLinkageLod(LinkageTree(table, n, max_rf, kAutoLodLow, kAutoLodHigh, kAutoLodStep), n);
  if (chosen.found) rule.min_lod = chosen.threshold;
  if (choice != nullptr) *choice = chosen;
  return rule;
}

std::vector<int32_t> LinkageGroups(const PairTable& table, int32_t n, const LinkageRule& rule) {
  if (n < 1) return {};
  std::vector<LodTreeRow> rows = LodTree(CappedPairs(table, n, rule.max_rf).Table(), n, {rule.min_lod}, true);
  return std::move(rows.front().group);
}

}  // namespace gae
