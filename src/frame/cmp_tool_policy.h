// The consensus-map tool (CMP) as a policy of the map-tool driver. Each chromosome of its input
// is one existing map; the markers they share tie them together, and the pair values are mean
// distances rather than estimates. Its exports are in exports_cmp.cpp.
#pragma once

#include <cstdint>

#include "frame/tool_policy.h"
#include "input/consensus_input.h"

namespace gae {

// Caller-owned arrays of the consensus check, sized by the caller's `num_markers` (distinct
// markers) and `num_chs` (input maps).
//   name_codes    num_markers x 35 character codes, the marker index running fastest:
//                 character j of marker i at (j-1)*num_markers + (i-1)
//   maps_holding  per marker: on how many input maps it stands
//   places        num_markers x num_chs, laid out like the names, the marker index running
//                 fastest: the place (1-based, in map order) of marker i on map c at
//                 (c-1)*num_markers + (i-1), 0 where map c lacks the marker
struct CmpCheckArrays {
  int num_chs = 0;
  int num_markers = 0;
  int* name_codes = nullptr;
  int* maps_holding = nullptr;
  int* places = nullptr;
};

class CmpPolicy final : public MapToolPolicy {
 public:
  // `check` is given by CheckErrorCMP only: the arrays that FillCheckArrays fills.
  explicit CmpPolicy(const CmpCheckArrays* check = nullptr);

  void Read(InputFile& in) override;
  int32_t NumMarkers() const override { return data_.maps.distinct.Count(); }
  // The working anchors of a consensus run are the map counts: the ordering puts the markers
  // that two maps or more share first.
  std::span<const int32_t> WorkingAnchors() const override {
    return data_.maps.distinct.maps_holding;
  }
  // The caller's extents govern the copy: names and map counts of markers beyond the file's
  // stay as they were, while the place matrix is cleared first, as a stale place would look
  // like a real one.
  void FillCheckArrays() override;

  bool WritePairs(const std::string& lrd_name, int threads, UniformStream& random) override;
  int32_t StoreMappingFunction() const override;

  // .sum always, .dis by the one switch.
  void WriteResults(ResultFiles& files, const FinishedMap& map,
                    const OutputSwitches& switches, const PairTable& pairs,
                    UniformStream& random) override;

 private:
  const CmpCheckArrays* check_;
  ConsensusInput data_;
};

}  // namespace gae
