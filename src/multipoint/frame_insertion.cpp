#include "multipoint/frame_insertion.h"

#include <algorithm>
#include <cmath>

#include "multipoint/gap_score.h"

namespace gae {

std::vector<int32_t> FrameMarkers(const GroupCalls& calls, const std::vector<int32_t>& start, int min_frame) {
  std::vector<int32_t> frame;
  for (int32_t m : start)
    if (calls.categories[m] == 1) frame.push_back(m);
  if (static_cast<int>(frame.size()) < min_frame || frame.size() == start.size()) frame.clear();
  return frame;
}

std::vector<int32_t> InsertIntoFrame(const GroupCalls& calls, const ChainState& frame,
                                     const std::vector<int32_t>& others) {
  const int m = static_cast<int>(frame.order.size());
  struct Placed {
    int gap;        // -1 before the first frame marker, m - 1 after the last
    double lean;    // how much more the gap on the left likes it than the one on the right
    int32_t marker;
  };
  std::vector<Placed> placed;
  std::vector<double> score(m + 1);
  for (int32_t x : others) {
    for (int q = -1; q < m; ++q) score[q + 1] = GapScore(calls, frame, x, q);
    const int best = static_cast<int>(std::max_element(score.begin(), score.end()) - score.begin());
    const double left = best > 0 ? score[best - 1] : -INFINITY;
    const double right = best < m ? score[best + 1] : -INFINITY;
    // Markers past either end keep the order they came in.
    const double lean = std::isfinite(left) && std::isfinite(right) ? left - right : 0.0;
    placed.push_back({best - 1, lean, x});
  }
  std::stable_sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) {
    return a.gap != b.gap ? a.gap < b.gap : a.lean > b.lean;
  });
  std::vector<int32_t> order;
  std::size_t k = 0;
  for (int q = -1; q < m; ++q) {
    if (q >= 0) order.push_back(frame.order[q]);
    for (; k < placed.size() && placed[k].gap == q; ++k) order.push_back(placed[k].marker);
  }
  return order;
}

}  // namespace gae
