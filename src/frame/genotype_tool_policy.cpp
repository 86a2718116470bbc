#include "frame/genotype_tool_policy.h"

#include <algorithm>
#include <utility>

#include "frame/name_codes.h"

namespace gae {

int GenotypeToolPolicy::CopyMarkerIdentity(int extent, int* name_codes, int* anchor, int* category) const {
  NamesToCodes(data_.markers.names, 35, extent, name_codes);
  const int n = std::min<int>(extent, data_.num_markers);
  std::copy_n(data_.anchors.begin(), n, anchor);
  std::copy_n(data_.markers.categories.begin(), n, category);
  return n;
}

void GenotypeToolPolicy::MoveIntoLayout(const FinishedMap& map, GenotypeLayout& out) {
  FillFinishedLayout(map, out);
  out.marker_names = std::move(data_.markers.names);
  out.mapping_function = data_.mapping_function;
  out.population_type = data_.population_type;
  out.space_type = data_.space_type;
  out.num_individuals = data_.population_size;
  out.types = std::move(data_.markers.types);
}

MapLayout GenotypeToolPolicy::TakeMapLayout(const FinishedMap& finished) {
  MapLayout map;
  MoveIntoLayout(finished, map);
  map.marker_class = std::move(data_.markers.categories);
  return map;
}

}  // namespace gae
