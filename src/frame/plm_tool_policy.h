// The PLM tool (four-way and eight-way pure lines) as a policy of the map-tool driver. Its
// exports are in exports_plm.cpp.
#pragma once

#include <cstdint>

#include "frame/genotype_tool_policy.h"
#include "input/map_tool_reader.h"

namespace gae {

// Caller-owned arrays of the PLM check, each of extent `num_markers` (names: 35 per marker, the
// marker index running fastest). `size[0]` to `size[7]` count the lines showing founder letters
// A to H (E to H stay 0 among four founders), `size[8]` the missing ones.
struct PlmCheckArrays {
  int num_markers = 0;
  int* name_codes = nullptr;
  int* anchor = nullptr;
  int* size[9] = {};
  int* category = nullptr;  // the founder pattern, one digit per founder
  float* chi_square = nullptr;
  float* probability = nullptr;
};

class PlmPolicy final : public GenotypeToolPolicy {
 public:
  // `check` is given by CheckErrorPLM only: the arrays that FillCheckArrays fills.
  explicit PlmPolicy(const PlmCheckArrays* check = nullptr);

  void FillCheckArrays() override;

  bool WritePairs(const std::string& lrd_name, int threads, UniformStream& random) override;

  void WriteResults(ResultFiles& files, const FinishedMap& map,
                    const OutputSwitches& switches, const PairTable& pairs,
                    UniformStream& random) override;

 private:
  const PlmCheckArrays* check_;
};

}  // namespace gae
