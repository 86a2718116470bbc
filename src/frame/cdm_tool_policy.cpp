#include "frame/cdm_tool_policy.h"

#include <utility>

#include "frame/map_tool_policy.h"
#include "report/clonal_output.h"
#include "report/clonal_segregation.h"
#include "twopoint/cdm_pairwise_file.h"

namespace gae {

CdmPolicy::CdmPolicy(const CdmCheckArrays* check)
    : GenotypeToolPolicy(ProfileOf(MapTool::kCDM)), check_(check) {}

void CdmPolicy::FillCheckArrays() {
  if (check_ == nullptr) return;
  const CdmCheckArrays& out = *check_;
  const int n = CopyMarkerIdentity(out.num_markers, out.name_codes, out.anchor, out.category);
  for (int i = 0; i < n; ++i) {
    const ClonalCounts counts = CountClonalTypes(TypesOf(i), data_.population_size);
    for (int t = 0; t < 12; ++t) out.sizes[t][i] = counts[t];
    const ClonalSegregation test = ClonalSegregationChiSquare(data_.markers.categories[i], counts);
    out.chi_square[i] = test.chi_square;
    out.probability[i] = test.probability;
  }
}

bool CdmPolicy::WritePairs(const std::string& lrd_name, int threads, UniformStream& random) {
  ClonalMarkers markers;
  markers.population_type = data_.population_type;
  markers.mapping_function = data_.mapping_function;
  markers.num_markers = data_.num_markers;
  markers.num_individuals = data_.population_size;
  markers.categories = data_.markers.categories.data();
  markers.types = data_.markers.types.data();
  return CDMPairwiseFile(lrd_name, markers, threads, random);
}

void CdmPolicy::WriteResults(ResultFiles& files, const FinishedMap& finished,
                             const OutputSwitches& switches, const PairTable& pairs,
                             UniformStream& random) {
  ClonalLayout map;
  MoveIntoLayout(finished, map);
  map.category = std::move(data_.markers.categories);
  WriteClonalResults(map, pairs, files, ResultSwitchesOf(switches), random);
}

}  // namespace gae
