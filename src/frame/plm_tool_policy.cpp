#include "frame/plm_tool_policy.h"

#include "frame/map_tool_policy.h"
#include "vocabulary/population.h"
#include "report/tool_results.h"
#include "report/pure_line_segregation.h"
#include "input/tool_codes.h"
#include "twopoint/input_pair_file.h"

namespace gae {

PlmPolicy::PlmPolicy(const PlmCheckArrays* check)
    : GenotypeToolPolicy(ProfileOf(MapTool::kPLM)), check_(check) {}

void PlmPolicy::FillCheckArrays() {
  if (check_ == nullptr) return;
  const PlmCheckArrays& out = *check_;
  const int n = CopyMarkerIdentity(out.num_markers, out.name_codes, out.anchor, out.category);
  const int founders = PureLineFounders(data_.population_type);
  for (int i = 0; i < n; ++i) {
    const PureLineSegregation test = PureLineSegregationChiSquare(
        founders, data_.markers.categories[i], TypesOf(i), data_.population_size);
    for (int k = 0; k < 9; ++k) out.size[k][i] = test.counts[k];
    out.chi_square[i] = test.chi_square;
    out.probability[i] = test.probability;
  }
}

bool PlmPolicy::WritePairs(const std::string& lrd_name, int threads, UniformStream& random) {
  return WriteDataPairFile(lrd_name, kPureLineToolCode, data_, PairEstimator::kFrontEnd, threads, random);
}

void PlmPolicy::WriteResults(ResultFiles& files, const FinishedMap& finished,
                             const OutputSwitches& switches, const PairTable& pairs,
                             UniformStream& random) {
  WritePlmResults(TakeMapLayout(finished), pairs, ResultSwitchesOf(switches), random, files);
}

}  // namespace gae
