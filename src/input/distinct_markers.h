// The consensus tool treats each chromosome of a map section as one input map and works on the
// markers that the maps share. This table lists every marker name once, in the order of first
// appearance, and remembers where each map has it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/chromosome_record.h"

namespace gae {

struct DistinctMarkers {
  std::vector<std::string> names;         // 35 characters, each marker once
  std::vector<std::vector<int32_t>> ids;  // ids[c][j]: 1-based number of marker j+1 of map c+1
  std::vector<int32_t> maps_holding;      // per distinct marker: on how many maps it stands

  int32_t Count() const { return static_cast<int32_t>(names.size()); }
  // The place matrix, `num_markers` by `num_chs` with the marker index running fastest: cell
  // (c-1)*num_markers + (m-1) receives the place (1-based) of marker m on map c, 0 where the
  // map lacks it. The extents are the caller's; a marker that stands twice on one map keeps
  // its first place.
  void FillPlaces(int32_t num_markers, int32_t num_chs, int32_t* places) const;
};

DistinctMarkers BuildDistinctMarkers(const std::vector<ChromosomeRecord>& maps);

// Whether some marker stands on every one of the maps, the least a consensus needs to join them.
bool SomeMarkerOnEveryMap(const DistinctMarkers& table, int32_t num_maps);

}  // namespace gae
