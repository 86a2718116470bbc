#include "multipoint/relocation.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "multipoint/gap_score.h"
#include "multipoint/window_moves.h"

namespace gae {

int RelocateStrays(const GroupCalls& calls, ChainState& st, const std::vector<double>& gains, const FitSettings& fit,
                   const RelocationSettings& settings) {
  const int m = static_cast<int>(st.order.size());
  if (m < 4) return 0;
  std::vector<int> weakest(m);
  std::iota(weakest.begin(), weakest.end(), 0);
  std::sort(weakest.begin(), weakest.end(), [&](int a, int b) { return gains[a] < gains[b]; });
  // A stray links weakly, or stands with long intervals on both sides (its one side at an end).
  auto stray = [&](int p) {
    if (gains[p] < settings.below_lod) return true;
    const double left = p > 0 ? st.rf[p - 1] : 1.0, right = p + 1 < m ? st.rf[p] : 1.0;
    return std::min(left, right) > settings.long_rf;
  };
  std::vector<int32_t> candidates;
  for (int p : weakest) {
    if (static_cast<int>(candidates.size()) >= settings.max_markers) break;
    if (stray(p)) candidates.push_back(st.order[p]);
  }
  int moved = 0;
  WindowScratch scratch;
  for (int32_t x : candidates) {
    std::vector<int> position_of(calls.num_markers, -1);
    for (int k = 0; k < m; ++k) position_of[st.order[k]] = k;
    const int p = position_of[x];
    // The gaps on either side of the marker hold it already.
    int best_gap = -2;
    double best = -INFINITY;
    for (int q = -1; q < m; ++q) {
      if (q == p - 1 || q == p) continue;
      const double score = GapScore(calls, st, x, q);
      if (score > best) {
        best = score;
        best_gap = q;
      }
    }
    if (best_gap < -1) continue;
    // Moving right, the marker ends at the gap's left position; moving left, just after it.
    const int target = best_gap > p ? best_gap : best_gap + 1;
    WindowMove mv;
    mv.first = std::min(p, target);
    mv.last = std::max(p, target);
    if (target > p) {
      mv.markers.assign(st.order.begin() + p + 1, st.order.begin() + target + 1);
      mv.markers.push_back(x);
    } else {
      mv.markers.push_back(x);
      mv.markers.insert(mv.markers.end(), st.order.begin() + target, st.order.begin() + p);
    }
    // Start the window's intervals from where they are, the gap halved on each side of the
    // marker, and the two intervals it leaves joined.
    std::vector<int32_t> seq;
    if (mv.first > 0) seq.push_back(st.order[mv.first - 1]);
    seq.insert(seq.end(), mv.markers.begin(), mv.markers.end());
    if (mv.last < m - 1) seq.push_back(st.order[mv.last + 1]);
    const double gap = best_gap >= 0 && best_gap + 1 < m ? st.rf[best_gap] : 0.0;
    const double half = 0.5 * (1.0 - std::sqrt(std::max(0.0, 1.0 - 2.0 * gap)));
    const double r1 = p > 0 ? st.rf[p - 1] : 0.0, r2 = p + 1 < m ? st.rf[p] : 0.0;
    mv.rf.clear();
    for (std::size_t j = 0; j + 1 < seq.size(); ++j) {
      const int a = position_of[seq[j]], b = position_of[seq[j + 1]];
      double r;
      if (seq[j] == x || seq[j + 1] == x) r = half;
      else if (std::abs(a - b) == 1) r = st.rf[std::min(a, b)];
      else r = r1 + r2 - 2 * r1 * r2;
      mv.rf.push_back(std::clamp(r, 0.01, fit.max_rf));
    }
    ScoreWindow(calls, st, position_of, settings.em_rounds, fit.max_rf, mv, scratch, /*start_given=*/true);
    if (!(mv.log_likelihood > st.log_likelihood + settings.min_gain)) continue;
    ApplyWindow(calls, st, mv);
    EvaluateChain(calls, st, nullptr);  // every vector outside the window is stale now
    ++moved;
  }
  return moved;
}

}  // namespace gae
