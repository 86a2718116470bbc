#include "frame/cdm_tool_policy.h"

#include <algorithm>
#include <utility>

#include "frame/name_codes.h"
#include "report/clonal_output.h"
#include "report/clonal_segregation.h"
#include "twopoint/cdm_pairwise_file.h"

namespace gae {

CdmPolicy::CdmPolicy(const CdmCheckArrays* check)
    : GenotypeToolPolicy(ProfileOf(MapTool::kCDM)), check_(check) {}

void CdmPolicy::FillCheckArrays() {
  if (check_ == nullptr) return;
  const CdmCheckArrays& out = *check_;
  // The caller's extent governs the copy; the file's governs what there is to copy.
  const int n = std::min<int>(out.num_markers, data_.num_markers);
  const int64_t lines = data_.population_size;
  NamesToCodes(data_.markers.names, 35, out.num_markers, out.name_codes);
  for (int i = 0; i < n; ++i) {
    out.anchor[i] = data_.anchors[i];
    out.category[i] = data_.markers.categories[i];
    const ClonalCounts counts = CountClonalTypes(data_.markers.types.data() + i * lines, lines);
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
  FillFinishedLayout(finished, map);
  map.marker_names = std::move(data_.markers.names);
  map.mapping_function = data_.mapping_function;
  map.population_type = data_.population_type;
  map.space_type = data_.space_type;
  map.num_individuals = data_.population_size;
  map.category = std::move(data_.markers.categories);
  map.types = std::move(data_.markers.types);
  WriteClonalResults(map, pairs, files, {switches.On(0), switches.On(1), switches.On(2), switches.On(3)},
                     random);
}

}  // namespace gae
