#include "frame/finished_map_layout.h"

#include <utility>

#include "frame/name_codes.h"

namespace gae {

MapLayout LayoutOfFinishedMap(MapToolInput& data, const FinishedMap& args) {
  MapLayout map;
  map.population_type = data.population_type;
  map.mapping_function = data.mapping_function;
  map.space_type = data.space_type;
  map.num_individuals = data.population_size;
  map.marker_names = std::move(data.markers.names);
  map.marker_class = std::move(data.markers.categories);
  map.types = std::move(data.markers.types);
  map.num_markers = args.num_markers;
  map.num_mapped = args.num_mapped;
  map.num_unlinked = args.num_unlinked;
  map.anchor.assign(args.anchor, args.anchor + args.num_markers);
  for (int g = 0; g < args.num_groups; ++g)
    map.chromosome_names.push_back(GroupNameFromCodes(args.group_name_codes, g));
  map.chromosome_sizes.assign(args.group_size, args.group_size + args.num_groups);
  map.order.assign(args.order, args.order + args.num_markers);
  map.position.assign(args.position, args.position + args.num_mapped);
  return map;
}

}  // namespace gae
