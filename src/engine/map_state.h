// The one linkage map under construction: parallel arrays indexed by marker (input-file order)
// and by group. Vectors here are 0-based; marker and group numbers stored in them are 1-based.
#pragma once

#include <cstdint>
#include <string>
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

// Per-group progress, the values of `group_status`.
enum GroupStage : int32_t {
  kGroupGrouped = 1,
  kGroupOrdered = 2,
  kGroupRippled = 3,
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
  // Marker numbers in map order, in three blocks: the groups one after the other (group g from
  // the sum of the sizes of groups 1..g-1), then the unlinked markers, then the deleted ones.
  std::vector<int32_t> order;
  std::vector<float> position;    // parallel to order: cumulative position inside the group
  std::vector<int32_t> group_size;    // by group
  std::vector<int32_t> group_status;  // by group: 1 grouped, 2 ordered, 3 rippled
};

// Frees whatever an earlier run left, then sizes the marker arrays for `num_markers`: no
// anchors, no groups, the input order, zero positions. The group arrays wait for a grouping.
void AllocateMapState(MapModel& map, int32_t num_markers);
// Frees all six arrays; the map state becomes "released".
void ReleaseMapState(MapModel& map);
// Turns the marker groups into the full model: gaps in the group numbers closed, the counts,
// group sizes and statuses, the three-block order and zero positions. Does nothing once the
// map is grouped or further.
void RebuildGroupModel(MapModel& map);

// Closes gaps in the group numbers of `group` (num_markers entries): each group number that no
// marker uses, below the largest, is removed and the numbers above it move down, and
// `num_groups` falls by one for each. Unlinked (0) and deleted (negative) markers keep theirs.
void MapGroupCheck(int32_t num_markers, int32_t* num_groups, int32_t* group);

// Ties marker `marker` (1-based) to group `group_id`, or frees it (anchor 0) when the group
// lies outside 1..num_groups. A marker number outside 1..num_markers changes nothing.
void AnchorMarker(int32_t marker, int32_t group_id, int32_t num_groups, int32_t num_markers,
                  int32_t* anchor);

// One 19-character name per group: "Group7" for a group that is only grouped, "Chromsome7" for
// one that is ordered or rippled (the spelling is what the report readers expect). Names of
// groups in any other status are left as they are. `names` must hold num_groups entries.
void NameGroups(int32_t num_groups, const int32_t* group_status, std::vector<std::string>& names);

// The start (0-based index into `order`) of each group's slice: the running sum of the sizes.
std::vector<int64_t> GroupStarts(int32_t num_groups, const int32_t* group_size);

}  // namespace gae
