#include "frame/cdm_tool_policy.h"

#include <utility>

#include "frame/map_tool_policy.h"
#include "report/clonal_output.h"
#include "report/clonal_segregation.h"
#include "input/tool_codes.h"
#include "twopoint/input_pair_file.h"

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
  return WriteDataPairFile(lrd_name, kClonalToolCode, data_, PairEstimator::kFrontEnd, threads, random);
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
