#include "frame/map_tool_policy.h"

#include "report/map_layout.h"
#include "report/segregation.h"
#include "report/text_file.h"
#include "input/tool_codes.h"
#include "twopoint/input_pair_file.h"

namespace gae {

ResultSwitches ResultSwitchesOf(const OutputSwitches& switches) {
  return {switches.On(0), switches.On(1), switches.On(2), switches.On(3)};
}

MapPolicy::MapPolicy(const MapCheckArrays* check)
    : GenotypeToolPolicy(ProfileOf(MapTool::kMAP)), check_(check) {}

void MapPolicy::FillCheckArrays() {
  if (check_ == nullptr) return;
  const MapCheckArrays& out = *check_;
  const int n = CopyMarkerIdentity(out.num_markers, out.name_codes, out.anchor, out.category);
  for (int i = 0; i < n; ++i) {
    const SegregationTest test = SegregationChiSquare(data_.population_type, data_.markers.categories[i],
                                                      TypesOf(i), data_.population_size);
    out.size_a[i] = test.counts.n2;
    out.size_h[i] = test.counts.n1;
    out.size_b[i] = test.counts.n0;
    out.size_x[i] = test.counts.nx;
    if (test.tested) {
      out.chi_square[i] = test.chi_square;
      out.probability[i] = test.probability;
    }
  }
}

bool MapPolicy::WritePairs(const std::string& lrd_name, int threads, UniformStream& random) {
  return WriteDataPairFile(lrd_name, kMapToolCode, data_, PairEstimator::kFrontEnd, threads, random);
}

void MapPolicy::WriteResults(ResultFiles& files, const FinishedMap& finished,
                             const OutputSwitches& switches, const PairTable& pairs,
                             UniformStream& random) {
  WriteMapResults(TakeMapLayout(finished), pairs, ResultSwitchesOf(switches), random, files);
}

}  // namespace gae
