// Bins in the map run: of each set of markers with the same genotypes (as `gaengine bin` finds
// them), one representative is ordered and mapped, and the others ride along at its position.
// Above a few thousand markers most of a dense panel repeats what its neighbours say (300
// individuals see only a few hundred crossovers on a chromosome), and mapping each copy costs
// ordering time and multipoint time for nothing.
#pragma once

#include <cstdint>
#include <vector>

#include "input/map_tool_reader.h"
#include "multipoint/clonal_chain.h"
#include "pipeline/group_layout.h"

namespace gae {

// From this many markers on, a run bins unless told not to. Below it, ordering and the
// multipoint maps take seconds at most with every marker, and each marker's own calls place it
// (two markers identical but for a missing call still get their own positions).
inline constexpr int32_t kBinFrom = 3000;

// For each marker (1-based, entry 0 unused) the representative it rides with, or 0 when it is
// mapped itself; `bins` is set to the number of bins. Markers of different categories never
// share a bin; `tolerance` is the binning rule's share of lines that may differ.
std::vector<int32_t> BinCarriers(const MapToolInput& data, float tolerance, int32_t& bins);

// A group split into the markers mapped and, for each of them, those that ride along with it.
// A marker whose representative is not in the group is mapped itself.
struct GroupBins {
  std::vector<int32_t> mapped;                // 1-based
  std::vector<std::vector<int32_t>> riders;  // parallel to `mapped`
};
GroupBins SplitGroup(const std::vector<int32_t>& markers, const std::vector<int32_t>& carrier);

// The layout of `bins.mapped` spread over the whole group: each rider right after its
// representative, at the same position, dropped with it; `phases` (parallel to layout.order,
// may be null) likewise. Returns the markers (1-based) that the spread layout's indexes name.
std::vector<int32_t> CarryRiders(const GroupBins& bins, GroupLayout& layout, std::vector<Phase>* phases);

}  // namespace gae
