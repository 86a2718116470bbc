// Ordering a group around a frame of co-dominant markers, for data with many dominant and
// recessive markers.
//
// A dominant marker beside a recessive one carries almost no information on a small
// frequency: its estimate falls to 0 with a small LOD. The sum of adjacent frequencies then
// rewards putting such markers side by side, and a ripple by LOD sorts markers by type. Here
// the co-dominant markers are ordered first, as any group is; each other marker is then
// placed where its distances to the placed markers fit best, every pair weighed by its LOD so
// that pairs that say little do not decide, and by its shortness, since long distances are
// noisy and biased by the mapping function.
#pragma once

#include <cstdint>

#include "engine/order_group.h"
#include "vocabulary/uniform_stream.h"
#include "twopoint/pair_table.h"

namespace gae {

struct FrameOrderingOptions {
  OrderingOptions frame;         // how the co-dominant markers are ordered
  int32_t min_frame = 4;         // fewer co-dominant markers: the group is ordered as usual
  // The usual ordering's ripple: of the frame, and of a group without one.
  int ripple_by = kByFirstValue;
  int32_t window_size = 5;
};

struct FrameOrderingResult {
  bool framed = false;      // false: too few co-dominant markers, ordered and rippled as usual
  int32_t frame_size = 0;   // co-dominant markers in the group
};

// Orders the n markers of group_order (1-based marker numbers) in place and fills
// group_position (cumulative map distance). group_kind gives each marker's kind by position
// (1 co-dominant, 12 dominant, 10 recessive).
FrameOrderingResult OrderAroundFrame(const PairTable& table, const FrameOrderingOptions& options, int32_t n,
                                     const int32_t* group_kind, int32_t* group_order, float* group_position,
                                     UniformStream& random, const StartSink& sink);

// The fit of a marker placed at `t` cM: the squared difference between each pair's distance
// estimate and the distance along the map, weighed by (LOD (1 - 2r))^2, over the partners at
// `positions` (ascending, parallel to `partners`) whose pairs weigh most (a dozen at most);
// pairs of frequency 0.4 or more or without a positive LOD are left out. Returns the best t
// and the index of the first partner to its right (partners.size() when it goes last); -1
// when no pair informs.
struct Placement {
  int32_t gap = -1;
  float t = 0.0f;
  double misfit = 0.0;
};
Placement BestPlacement(const PairTable& table, int32_t marker, const int32_t* partners, const float* positions,
                        int32_t count);

}  // namespace gae
