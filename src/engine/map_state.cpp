#include "engine/map_state.h"

#include <algorithm>
#include <limits>

#include "vocabulary/fixed_format.h"

namespace gae {

void AllocateMapState(MapModel& map, int32_t num_markers) {
  ReleaseMapState(map);
  const std::size_t n = num_markers > 0 ? static_cast<std::size_t>(num_markers) : 0;
  map.num_markers = num_markers;
  map.anchor.assign(n, 0);
  map.group.assign(n, 0);
  map.order.resize(n);
  for (std::size_t i = 0; i < n; ++i) map.order[i] = static_cast<int32_t>(i + 1);
  map.position.assign(n, 0.0f);
  map.map_state = kMapAllocated;
}

void ReleaseMapState(MapModel& map) {
  // swap with empties so that the memory really goes back
  std::vector<int32_t>().swap(map.anchor);
  std::vector<int32_t>().swap(map.group);
  std::vector<int32_t>().swap(map.order);
  std::vector<float>().swap(map.position);
  std::vector<int32_t>().swap(map.group_size);
  std::vector<int32_t>().swap(map.group_status);
  map.map_state = kMapReleased;
}

void MapGroupCheck(int32_t num_markers, int32_t* num_groups, int32_t* group) {
  if (num_markers < 1 || group == nullptr) return;
  const int32_t largest = *std::max_element(group, group + num_markers);
  if (largest < 2) return;  // "largest - 1 below 1", without overflow near the lowest integer
  // Every unused number below the largest is removed, so a used number v ends as its rank among
  // the used numbers; the largest is used by definition. Ranking the distinct numbers keeps
  // this linear in the markers, whatever size the numbers have.
  std::vector<int32_t> used;
  used.reserve(static_cast<std::size_t>(num_markers));
  for (int32_t i = 0; i < num_markers; ++i)
    if (group[i] >= 1) used.push_back(group[i]);
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  for (int32_t i = 0; i < num_markers; ++i) {
    if (group[i] < 1) continue;
    group[i] = static_cast<int32_t>(std::lower_bound(used.begin(), used.end(), group[i]) - used.begin()) + 1;
  }
  if (num_groups != nullptr) {
    // A count passed in near the lowest integer stops there rather than wrap round.
    const int64_t left = int64_t{*num_groups} - (largest - static_cast<int64_t>(used.size()));
    *num_groups = static_cast<int32_t>(std::max<int64_t>(left, std::numeric_limits<int32_t>::min()));
  }
}

void RebuildGroupModel(MapModel& map) {
  if (map.map_state >= kMapGrouped) return;
  const int32_t n = static_cast<int32_t>(map.group.size());
  MapGroupCheck(n, &map.num_groups, map.group.data());

  map.num_mapped = map.num_unlinked = map.num_deleted = 0;
  int32_t largest = 0;
  for (const int32_t g : map.group) {
    if (g >= 1) ++map.num_mapped;
    else if (g == 0) ++map.num_unlinked;
    else ++map.num_deleted;
    largest = std::max(largest, g);
  }
  map.num_groups = largest;
  map.group_size.assign(static_cast<std::size_t>(largest), 0);
  map.group_status.assign(static_cast<std::size_t>(largest), kGroupGrouped);
  for (const int32_t g : map.group)
    if (g >= 1) ++map.group_size[static_cast<std::size_t>(g - 1)];

  // Groups in turn, then unlinked, then deleted; inside each block by marker number. A stable
  // bucket pass gives that order directly.
  std::vector<int64_t> next = GroupStarts(largest, map.group_size.data());
  int64_t unlinked_at = map.num_mapped;
  int64_t deleted_at = static_cast<int64_t>(map.num_mapped) + map.num_unlinked;
  map.order.resize(static_cast<std::size_t>(n));
  for (int32_t i = 0; i < n; ++i) {
    const int32_t g = map.group[static_cast<std::size_t>(i)];
    int64_t& at = g >= 1 ? next[static_cast<std::size_t>(g - 1)] : (g == 0 ? unlinked_at : deleted_at);
    map.order[static_cast<std::size_t>(at++)] = i + 1;
  }
  map.position.assign(static_cast<std::size_t>(n), 0.0f);
  map.map_state = kMapGrouped;
}

void AnchorMarker(int32_t marker, int32_t group_id, int32_t num_groups, int32_t num_markers,
                  int32_t* anchor) {
  if (marker < 1 || marker > num_markers) return;
  anchor[marker - 1] = group_id >= 1 && group_id <= num_groups ? group_id : 0;
}

void NameGroups(int32_t num_groups, const int32_t* group_status, std::vector<std::string>& names) {
  for (int32_t i = 1; i <= num_groups; ++i) {
    const int32_t status = group_status[i - 1];
    const char* word = status == kGroupGrouped ? "Group"
                       : (status == kGroupOrdered || status == kGroupRippled) ? "Chromsome"
                                                                              : nullptr;
    if (word == nullptr) continue;
    // As many digits as the number has, at most five: 100000 and beyond print as asterisks.
    const int width = i < 10 ? 1 : i < 100 ? 2 : i < 1000 ? 3 : i < 10000 ? 4 : 5;
    names[static_cast<std::size_t>(i - 1)] = fmt::PadRight(std::string(word) + fmt::I(i, width), 19);
  }
}

std::vector<int64_t> GroupStarts(int32_t num_groups, const int32_t* group_size) {
  std::vector<int64_t> starts(num_groups > 0 ? static_cast<std::size_t>(num_groups) : 0);
  int64_t at = 0;
  for (int32_t g = 0; g < num_groups; ++g) {
    starts[static_cast<std::size_t>(g)] = at;
    at += group_size[g];
  }
  return starts;
}

}  // namespace gae
