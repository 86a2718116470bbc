// The one linkage map under construction: parallel arrays indexed by marker (input-file order)
// and by group. Vectors here are 0-based; marker and group numbers stored in them are 1-based.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

// How far the pipeline has gone with the map.
enum MapStage : int32_t {
  kMapReleased = -1,
  kMapAllocated = 0,
  kMapGrouped = 1,
  kMapOrdered = 2,
  kMapRippled = 3,
};

struct MapModel {
  int32_t map_state = kMapReleased;
  int32_t num_markers = 0;
  int32_t num_groups = 0;
  int32_t num_mapped = 0;    // markers with a group of 1 or more
  int32_t num_unlinked = 0;  // markers with group 0
  int32_t num_deleted = 0;   // markers with a negative group

  std::vector<int32_t> anchor;    // by marker: tied group, 0 free (CMP: number of maps holding it)
  std::vector<int32_t> group;     // by marker: group, 0 unlinked, negative deleted
  std::vector<int32_t> order;     // marker numbers: groups in turn, then unlinked, then deleted
  std::vector<float> position;    // parallel to order: cumulative position inside the group
  std::vector<int32_t> group_size;    // by group
  std::vector<int32_t> group_status;  // by group: 1 grouped, 2 ordered, 3 rippled
};

}  // namespace gae
