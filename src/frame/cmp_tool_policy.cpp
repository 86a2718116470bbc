#include "frame/cmp_tool_policy.h"

#include <algorithm>

#include "frame/name_codes.h"
#include "report/consensus_reports.h"
#include "report/map_layout.h"
#include "report/text_file.h"
#include "twopoint/cmp_pairwise_file.h"

namespace gae {

CmpPolicy::CmpPolicy(const CmpCheckArrays* check)
    : MapToolPolicy(ProfileOf(MapTool::kCMP)), check_(check) {}

void CmpPolicy::Read(InputFile& in) { ReadConsensusInput(in, data_); }

void CmpPolicy::FillCheckArrays() {
  if (check_ == nullptr || check_->num_markers < 1) return;
  const CmpCheckArrays& out = *check_;
  const DistinctMarkers& table = data_.maps.distinct;
  NamesToCodes(table.names, 35, out.num_markers, out.name_codes);
  const int n = std::min(out.num_markers, table.Count());
  std::copy(table.maps_holding.begin(), table.maps_holding.begin() + n, out.maps_holding);
  table.FillPlaces(out.num_markers, out.num_chs, out.places);
}

bool CmpPolicy::WritePairs(const std::string& lrd_name, int /*threads*/, UniformStream&) {
  return CMPPairwiseFile(lrd_name, data_.maps.chromosomes, data_.maps.distinct);
}

int32_t CmpPolicy::StoreMappingFunction() const { return kCmpMappingFunction; }

void CmpPolicy::WriteResults(ResultFiles& files, const FinishedMap& finished,
                             const OutputSwitches& switches, const PairTable& pairs,
                             UniformStream& /*random*/) {
  FinishedMapLayout map;
  map.mapping_function = kCmpMappingFunction;
  map.marker_names = data_.maps.distinct.names;
  map.num_markers = finished.num_markers;
  map.num_mapped = finished.num_mapped;
  map.num_unlinked = finished.num_unlinked;
  // No anchor column here: CMPOutput is given none, and the map counts come from the file.
  for (int g = 0; g < finished.num_groups; ++g)
    map.chromosome_names.push_back(GroupNameFromCodes(finished.group_name_codes, g));
  map.chromosome_sizes.assign(finished.group_size, finished.group_size + finished.num_groups);
  map.order.assign(finished.order, finished.order + finished.num_markers);
  map.position.assign(finished.position, finished.position + finished.num_mapped);
  files.Write(".sum", ConsensusSumReport(map, data_.maps.distinct, data_.num_maps));
  if (switches.On(0)) files.Write(".dis", ConsensusDisReport(map, pairs));
}

}  // namespace gae
