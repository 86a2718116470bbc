#include "frame/plm_tool_policy.h"

#include <algorithm>

#include "frame/map_tool_policy.h"
#include "frame/name_codes.h"
#include "frame/population.h"
#include "report/map_downstream.h"
#include "report/pure_line_reports.h"
#include "report/pure_line_segregation.h"
#include "twopoint/plm_pairwise_file.h"

namespace gae {

PlmPolicy::PlmPolicy(const PlmCheckArrays* check)
    : GenotypeToolPolicy(ProfileOf(MapTool::kPLM)), check_(check) {}

void PlmPolicy::FillCheckArrays() {
  if (check_ == nullptr) return;
  const PlmCheckArrays& out = *check_;
  // The caller's extent governs the copy; the file's governs what there is to copy.
  const int n = std::min<int>(out.num_markers, data_.num_markers);
  const int64_t lines = data_.population_size;
  const int founders = PureLineFounders(data_.population_type);
  NamesToCodes(data_.markers.names, 35, out.num_markers, out.name_codes);
  for (int i = 0; i < n; ++i) {
    const int32_t pattern = data_.markers.categories[i];
    out.anchor[i] = data_.anchors[i];
    out.category[i] = pattern;
    const PureLineSegregation test = PureLineSegregationChiSquare(
        founders, pattern, data_.markers.types.data() + i * lines, lines);
    for (int k = 0; k < 9; ++k) out.size[k][i] = test.counts[k];
    out.chi_square[i] = test.chi_square;
    out.probability[i] = test.probability;
  }
}

bool PlmPolicy::WritePairs(const std::string& lrd_name, int threads, UniformStream&) {
  PureLineMarkers markers;
  markers.population_type = data_.population_type;
  markers.num_markers = data_.num_markers;
  markers.num_individuals = data_.population_size;
  markers.patterns = data_.markers.categories.data();
  markers.types = data_.markers.types.data();
  return PLMPairwiseFile(lrd_name, markers, threads);
}

void PlmPolicy::WriteResults(ResultFiles& files, const FinishedMap& finished,
                             const OutputSwitches& switches, const PairTable& pairs,
                             UniformStream& random) {
  const MapLayout map = TakeMapLayout(data_, finished);
  WriteSharedMapReports(map, pairs, switches, files);
  files.Write(".mtp", PlmMtpReport(map));
  WritePlmDownstreamFiles(map, switches.On(3), random, files);
}

}  // namespace gae
