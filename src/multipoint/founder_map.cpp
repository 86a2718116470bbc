#include "multipoint/founder_map.h"

#include "multipoint/founder_calls.h"
#include "multipoint/founder_design.h"

namespace gae {

MultipointGroupMap MapFounderGroup(int32_t type, int32_t num_individuals, const std::vector<char>& letters,
                                   const std::vector<int32_t>& patterns, const std::vector<int32_t>& start_order,
                                   const MultipointOptions& options) {
  if (FounderCount(type) == 0 || num_individuals <= 0 ||
      letters.size() != patterns.size() * static_cast<std::size_t>(num_individuals) ||
      !ValidStartOrder(patterns.size(), start_order)) {
    MultipointGroupMap map;
    map.ok = false;
    return map;
  }
  return MapGroupCalls(MakeFounderCalls(type, num_individuals, letters, patterns), start_order, options);
}

}  // namespace gae
