#include "pipeline/consensus_order.h"

#include <vector>

#include "engine/backbone_order.h"
#include "engine/order_group.h"
#include "engine/tour_matrix.h"
#include "pipeline/group_layout.h"

namespace gae {

void OrderConsensusGroups(const PairTable& table, int method, const int32_t* maps_holding, MapModel& map,
                          UniformStream& random) {
  const std::vector<int64_t> starts = GroupStarts(map.num_groups, map.group_size.data());
  for (int32_t g = 0; g < map.num_groups; ++g) {
    const int32_t n = map.group_size[static_cast<size_t>(g)];
    int32_t* order = map.order.data() + starts[static_cast<size_t>(g)];
    float* position = map.position.data() + starts[static_cast<size_t>(g)];
    if (n >= kBackboneFrom) {
      // The mean distances themselves (the first word): additive, where the frequency that
      // stands beside them saturates at 0.5.
      const std::vector<int32_t> local = BackboneOrder(ReadGroupMatrix(table, kByFirstValue, n, order));
      const std::vector<int32_t> was(order, order + n);
      for (int32_t k = 0; k < n; ++k) order[k] = was[static_cast<size_t>(local[static_cast<size_t>(k)] - 1)];
      ComputePositions(table, n, order, position);
    } else if (n >= 2) {
      std::vector<int32_t> held(static_cast<size_t>(n));
      for (int32_t k = 0; k < n; ++k) held[static_cast<size_t>(k)] = maps_holding[order[k] - 1];
      OrderConsensus(table, method, n, held.data(), order, position, random, {});
    }
    map.group_status[static_cast<size_t>(g)] = kGroupOrdered;
  }
  map.map_state = kMapOrdered;
}

}  // namespace gae
