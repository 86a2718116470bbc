// What the consensus check hands back to the caller about the markers of its input maps.
#pragma once

#include <cstdint>

#include "input/distinct_markers.h"

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

// Fills the caller's arrays from the table of distinct markers. The caller's extents govern
// the copy: names and map counts of markers beyond the table stay as they were, while the
// place matrix is cleared to 0 first, since a stale place would look like a real one.
void FillConsensusCheck(const DistinctMarkers& table, const CmpCheckArrays& out);

}  // namespace gae
