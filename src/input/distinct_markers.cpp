#include "input/distinct_markers.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace gae {

DistinctMarkers BuildDistinctMarkers(const std::vector<ChromosomeRecord>& maps) {
  DistinctMarkers table;
  std::unordered_map<std::string_view, int32_t> number_of;
  std::vector<std::size_t> last_map;  // per distinct marker: the last map counted, plus one
  table.ids.resize(maps.size());
  for (std::size_t c = 0; c < maps.size(); ++c) {
    for (const std::string& name : maps[c].marker_names) {
      auto [it, inserted] = number_of.emplace(name, table.Count() + 1);
      if (inserted) {
        table.names.push_back(name);
        table.maps_holding.push_back(0);
        last_map.push_back(0);
      }
      const int32_t id = it->second;
      table.ids[c].push_back(id);
      if (last_map[id - 1] != c + 1) {
        last_map[id - 1] = c + 1;
        ++table.maps_holding[id - 1];
      }
    }
  }
  return table;
}

void DistinctMarkers::FillPlaces(int32_t num_markers, int32_t num_chs, int32_t* places) const {
  if (num_markers < 1 || num_chs < 1) return;
  std::fill(places, places + static_cast<std::size_t>(num_markers) * num_chs, 0);
  const std::size_t maps = std::min(ids.size(), static_cast<std::size_t>(num_chs));
  for (std::size_t c = 0; c < maps; ++c) {
    for (std::size_t j = 0; j < ids[c].size(); ++j) {
      const int32_t id = ids[c][j];
      if (id > num_markers) continue;
      int32_t& cell = places[c * static_cast<std::size_t>(num_markers) + (id - 1)];
      if (cell == 0) cell = static_cast<int32_t>(j + 1);
    }
  }
}

bool SomeMarkerOnEveryMap(const DistinctMarkers& table, int32_t num_maps) {
  return std::any_of(table.maps_holding.begin(), table.maps_holding.end(),
                     [num_maps](int32_t held) { return held >= num_maps; });
}

}  // namespace gae
