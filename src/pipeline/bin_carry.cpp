#include "pipeline/bin_carry.h"

#include <unordered_map>
#include <unordered_set>

#include "prep/binning.h"

namespace gae {

std::vector<int32_t> BinCarriers(const MapToolInput& data, float tolerance, int32_t& bins) {
  BinningOptions options;  // nothing filtered: the map run keeps every marker
  options.tolerance = tolerance;
  const BinningData binning{data.num_markers, data.population_size, data.markers.types.data(), data.markers.categories};
  const BinningResult result = BinMarkers(binning, {}, options);
  std::vector<int32_t> carrier(static_cast<size_t>(data.num_markers) + 1, 0);
  for (const MarkerBin& bin : result.bins)
    for (size_t k = 1; k < bin.members.size(); ++k)
      carrier[static_cast<size_t>(bin.members[k]) + 1] = bin.members.front() + 1;
  bins = static_cast<int32_t>(result.bins.size());
  return carrier;
}

GroupBins SplitGroup(const std::vector<int32_t>& markers, const std::vector<int32_t>& carrier) {
  GroupBins split;
  const std::unordered_set<int32_t> present(markers.begin(), markers.end());
  auto carried_by = [&](int32_t m) {
    const int32_t c = static_cast<size_t>(m) < carrier.size() ? carrier[static_cast<size_t>(m)] : 0;
    return c > 0 && present.count(c) > 0 ? c : 0;
  };
  std::unordered_map<int32_t, size_t> slot;
  for (const int32_t m : markers)
    if (carried_by(m) == 0) {
      slot[m] = split.mapped.size();
      split.mapped.push_back(m);
    }
  split.riders.resize(split.mapped.size());
  for (const int32_t m : markers)
    if (const int32_t c = carried_by(m); c > 0) split.riders[slot[c]].push_back(m);
  return split;
}

std::vector<int32_t> CarryRiders(const GroupBins& bins, GroupLayout& layout, std::vector<Phase>* phases) {
  // The spread layout names the mapped markers first, then the riders bin by bin.
  std::vector<int32_t> markers = bins.mapped;
  std::vector<int32_t> first_rider(bins.mapped.size());
  for (size_t k = 0; k < bins.mapped.size(); ++k) {
    first_rider[k] = static_cast<int32_t>(markers.size());
    markers.insert(markers.end(), bins.riders[k].begin(), bins.riders[k].end());
  }
  GroupLayout spread = layout;
  spread.order.clear();
  spread.positions_cm.clear();
  spread.interval_rf.clear();
  spread.dropped.clear();
  std::vector<Phase> spread_phases;
  auto each_of = [&](int32_t k, auto&& f) {
    f(k);
    for (size_t r = 0; r < bins.riders[static_cast<size_t>(k)].size(); ++r) f(first_rider[static_cast<size_t>(k)] + static_cast<int32_t>(r));
  };
  for (size_t p = 0; p < layout.order.size(); ++p)
    each_of(layout.order[p], [&](int32_t index) {
      if (!spread.order.empty())
        spread.interval_rf.push_back(index == layout.order[p] && p > 0 && p - 1 < layout.interval_rf.size() ? layout.interval_rf[p - 1] : 0.0);
      spread.order.push_back(index);
      spread.positions_cm.push_back(layout.positions_cm[p]);
      if (phases != nullptr) spread_phases.push_back((*phases)[p]);
    });
  for (const int32_t k : layout.dropped) each_of(k, [&](int32_t index) { spread.dropped.push_back(index); });
  layout = std::move(spread);
  if (phases != nullptr) *phases = std::move(spread_phases);
  return markers;
}

}  // namespace gae
