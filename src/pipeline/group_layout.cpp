#include "pipeline/group_layout.h"

#include <unordered_map>

#include "engine/backbone_order.h"
#include "engine/frame_ordering.h"
#include "engine/rippling.h"
#include "twopoint/mapping_function.h"

namespace gae {

std::vector<int32_t> StartOrder(const PairTable& pairs, const StartOrderOptions& options,
                                const std::vector<int32_t>& markers, const std::vector<int32_t>& kinds,
                                UniformStream& random, const std::function<void(std::string_view)>& log,
                                bool* framed) {
  const int32_t n = static_cast<int32_t>(markers.size());
  std::vector<int32_t> order = markers;
  std::vector<float> position(markers.size(), 0.0f);
  const StartSink sink = [&](const StartRecord& record) {
    if (log) log(StartLine(record));
  };
  if (framed != nullptr) *framed = false;
  if (n >= 2 && options.around_frame) {
    FrameOrderingOptions frame;
    frame.frame = options.tour;
    frame.ripple_by = options.ripple_by;
    frame.window_size = options.window_size;
    const FrameOrderingResult result =
        OrderAroundFrame(pairs, frame, n, kinds.data(), order.data(), position.data(), random, sink);
    if (framed != nullptr) *framed = result.framed;
  } else if (n >= kBackboneFrom) {
    const std::vector<int32_t> local = BackboneOrder(TrustedFrequencies(pairs, n, markers.data(), kTrustedLod));
    // No ripple after it: its moves already search every window, and a ripple on LOD would
    // drag well-typed markers towards the pairs that say most rather than the nearest.
    for (int32_t k = 0; k < n; ++k) order[static_cast<size_t>(k)] = markers[static_cast<size_t>(local[static_cast<size_t>(k)] - 1)];
  } else if (n >= 2) {
    const std::vector<int32_t> no_anchor(markers.size(), 0);
    OrderGroup(pairs, options.tour, n, no_anchor.data(), order.data(), position.data(), random, sink);
    RippleGroup(pairs, options.ripple_by, options.window_size, n, order.data(), position.data());
  }
  std::unordered_map<int32_t, int32_t> index;
  for (int32_t k = 0; k < n; ++k) index[markers[static_cast<size_t>(k)]] = k;
  std::vector<int32_t> start(markers.size());
  for (int32_t k = 0; k < n; ++k) start[static_cast<size_t>(k)] = index[order[static_cast<size_t>(k)]];
  return start;
}

GroupLayout GroupMapFromTwoPoint(const PairTable& pairs, int32_t mapping_function,
                                 const std::vector<int32_t>& markers, const std::vector<int32_t>& start_order) {
  GroupLayout layout;
  layout.order = start_order;
  if (start_order.empty()) return layout;
  layout.positions_cm.push_back(0.0);
  float position = 0.0f;  // summed in single precision, as the ordering stage places markers
  for (size_t k = 1; k < start_order.size(); ++k) {
    const int32_t left = markers[static_cast<size_t>(start_order[k - 1])];
    const int32_t right = markers[static_cast<size_t>(start_order[k])];
    const float rf = pairs.Second(left, right);
    layout.interval_rf.push_back(rf);
    position += MapRecToDistance(mapping_function, rf);
    layout.positions_cm.push_back(position);
  }
  return layout;
}

std::vector<char> GroupGenotypes(const MapToolInput& input, const std::vector<int32_t>& markers) {
  const size_t n = static_cast<size_t>(input.population_size);
  std::vector<char> types;
  types.reserve(markers.size() * n);
  for (const int32_t m : markers) {
    const auto from = input.markers.types.begin() + static_cast<std::ptrdiff_t>(static_cast<size_t>(m - 1) * n);
    types.insert(types.end(), from, from + static_cast<std::ptrdiff_t>(n));
  }
  return types;
}

}  // namespace gae
