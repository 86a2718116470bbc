// The four local searches that improve a tour into an open path (a marker order), and the
// frame they share.
//
// The frame: the tour is a cycle kept as a successor list. Each pass evaluates every candidate
// move in a fixed visiting order (from local number 1 along the cycle), keeps the single best,
// applies it and begins again; there is no first-improvement shortcut. A gain must be strictly
// greater than the best so far, so the earliest move wins ties, and the search stops when a
// pass finds nothing better than 0.0001 (absolute, in the units of the values). All sums and
// gains are 32-bit.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/neighbour_lists.h"
#include "engine/tour_matrix.h"
#include "engine/tour_primitives.h"

namespace gae {

// A move as applied: `kind` 0 for a 2-opt move (cities a, b, c, d in cities[0..3]), or the
// 3-opt case 1..7 (cities x1..x6).
struct AppliedMove {
  int32_t kind = 0;
  int32_t cities[6] = {0, 0, 0, 0, 0, 0};
  float gain = 0.0f;
  bool operator==(const AppliedMove&) const = default;
};
using MoveLog = std::vector<AppliedMove>;

inline constexpr float kMinimumGain = 0.0001f;

// The searches that close the path through a dummy city at twice the largest value from every
// city: the best cycle through it is the best path between its two neighbours.
void TwoOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves = nullptr,
                     const NeighbourLists* near = nullptr);
void ThreeOptWithDummy(const TourMatrix& d, Tour& tour, MoveLog* moves = nullptr,
                       const NeighbourLists* near = nullptr);
// The searches on the cycle itself, each gain being the drop of the open length once the
// cycle's longest edge is cut out; the result starts after the longest edge.
void TwoOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves = nullptr,
                    const NeighbourLists* near = nullptr);
void ThreeOptOpenPath(const TourMatrix& d, Tour& tour, MoveLog* moves = nullptr,
                      const NeighbourLists* near = nullptr);

// The search selected by OrderingParam2: 1 and 2 the dummy-city 2-opt and 3-opt, 3 and 4 the
// open-path 2-opt and 3-opt; any other value leaves the tour as it is. `near`, the neighbour
// lists of d, may be given when several searches run on one matrix; the result is the same.
void RunLocalSearch(int search, const TourMatrix& d, Tour& tour, const NeighbourLists* near = nullptr);

// The passes of the frames on a successor list of m = d.Size() cities (used by the searches
// above; open_path chooses the gain). With neighbour lists of d (built here when not given)
// a pass scores only the moves that can gain, with the same outcome as scoring them all;
// values that are not all finite make it score them all.
void TwoOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves,
                  const NeighbourLists* near = nullptr);
void ThreeOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves,
                    const NeighbourLists* near = nullptr);

}  // namespace gae
