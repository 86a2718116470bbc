// The MAP tool (bi-parental populations) as a policy of the map-tool driver: the worked example
// of tool_policy.h. Its exports are in exports_map.cpp.
#pragma once

#include <cstdint>

#include "frame/genotype_tool_policy.h"
#include "input/map_tool_reader.h"
#include "report/map_layout.h"
#include "report/tool_results.h"

namespace gae {

// Caller-owned arrays of the MAP check, each of extent `num_markers` (names: 35 per marker,
// the marker index running fastest).
struct MapCheckArrays {
  int num_markers = 0;
  int* name_codes = nullptr;
  int* anchor = nullptr;
  int* size_a = nullptr;  // A and D after folding
  int* size_h = nullptr;
  int* size_b = nullptr;  // B and R after folding
  int* size_x = nullptr;
  int* category = nullptr;
  float* chi_square = nullptr;
  float* probability = nullptr;
};

// The output export's switches as the result writers take them: .lod, .rec, .dis, QTL files.
ResultSwitches ResultSwitchesOf(const OutputSwitches& switches);

class MapPolicy final : public GenotypeToolPolicy {
 public:
  // `check` is given by CheckErrorMAP only: the arrays that FillCheckArrays fills.
  explicit MapPolicy(const MapCheckArrays* check = nullptr);

  void FillCheckArrays() override;

  bool WritePairs(const std::string& lrd_name, int threads, UniformStream& random) override;

  void WriteResults(ResultFiles& files, const FinishedMap& map,
                    const OutputSwitches& switches, const PairTable& pairs,
                    UniformStream& random) override;

 private:
  const MapCheckArrays* check_;
};

}  // namespace gae
