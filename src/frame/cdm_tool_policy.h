// The CDM tool (clonal F1 and double cross) as a policy of the map-tool driver. Its exports
// are in exports_cdm.cpp.
#pragma once

#include <cstdint>

#include "frame/genotype_tool_policy.h"
#include "input/map_tool_reader.h"

namespace gae {

// Caller-owned arrays of the CDM check, each of extent `num_markers` (names: 35 per marker,
// the marker index running fastest). `sizes` are the counts of the twelve types in the order
// AC, AD, BC, BD, XC, XD, AX, BX, AA, AB, BB, XX.
struct CdmCheckArrays {
  int num_markers = 0;
  int* name_codes = nullptr;
  int* anchor = nullptr;
  int* sizes[12] = {};
  int* category = nullptr;
  float* chi_square = nullptr;
  float* probability = nullptr;
};

class CdmPolicy final : public GenotypeToolPolicy {
 public:
  // `check` is given by CheckErrorCDM only: the arrays that FillCheckArrays fills.
  explicit CdmPolicy(const CdmCheckArrays* check = nullptr);

  void FillCheckArrays() override;

  bool WritePairs(const std::string& lrd_name, int threads, UniformStream& random) override;

  void WriteResults(ResultFiles& files, const FinishedMap& map,
                    const OutputSwitches& switches, const PairTable& pairs,
                    UniformStream& random) override;

 private:
  const CdmCheckArrays* check_;
};

}  // namespace gae
