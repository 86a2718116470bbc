// Checks of a finished pairwise file against what the input claims. Anchors tie markers to
// groups before any pair is looked at, so a marker anchored to the wrong chromosome is mapped
// there, far off its end; and a marker whose alleles were scored the other way round shows a
// frequency above 1/2 with its neighbours, which no ordering can place. Both are found in the
// pairs and named, on every run, whether the file was computed now or reused.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae {

struct AnchorConflict {
  int marker = 0;               // 1-based
  int32_t own = 0, other = 0;   // anchor groups
  float lod_own = 0, lod_other = 0;  // the strongest link into each (0 when none)
  int partner_other = 0;        // the marker of that strongest link into `other`, 1-based
  int links_own = 0, links_other = 0;  // markers of each group linked above the threshold
};

// Markers anchored to one group that are linked above `threshold` to more markers of another
// anchored group than of their own, named one at a time (each judged as if those named before
// were free). `anchors`: one per marker, 0 for none.
std::vector<AnchorConflict> AnchorConflicts(const PairTable& pairs, std::span<const int32_t> anchors,
                                            float threshold);

// Markers whose alleles look switched: those whose strongest link, of LOD above `threshold`,
// shows more recombinants than parental types (a frequency above 1/2), named one at a time, the
// clearest first, each judged as if the markers named before it were switched. 1-based. Each
// round is one pass over the records in store order; `passed` hears how far it has read.
std::vector<int> SwitchedAlleleMarkers(const PairTable& pairs, int64_t num_markers, float threshold,
                                       const std::function<void(int64_t)>& passed = {});

}  // namespace gae
