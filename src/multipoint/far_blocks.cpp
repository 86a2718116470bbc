#include "multipoint/far_blocks.h"

#include <algorithm>
#include <cmath>

#include "multipoint/block_moves.h"
#include "multipoint/window_moves.h"

namespace gae {

namespace {

struct Candidate {
  int first, last;
  std::vector<int32_t> markers;
  double edge;  // the shorter of the two edge intervals (an end counts as 0.5)
};

std::vector<Candidate> OutstandingBlocks(const ChainState& st, const FarBlockSettings& set) {
  const int m = static_cast<int>(st.order.size());
  std::vector<double> sorted = st.rf;
  std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2), sorted.end());
  const double least_edge = set.edge_over_median * sorted[sorted.size() / 2];
  std::vector<Candidate> out;
  for (int k = set.min_block; k <= set.max_block && k < m; ++k)
    for (int first = 0; first + k <= m; ++first) {
      const int last = first + k - 1;
      const double left = first > 0 ? st.rf[first - 1] : 0.5, right = last + 1 < m ? st.rf[last] : 0.5;
      const double inner = k > 1 ? *std::max_element(st.rf.begin() + first, st.rf.begin() + last) : 0.0;
      const double edge = std::min(left, right);
      if (edge > inner && edge > least_edge)
        out.push_back({first, last, {st.order.begin() + first, st.order.begin() + last + 1}, edge});
    }
  std::stable_sort(out.begin(), out.end(), [](const Candidate& a, const Candidate& b) { return a.edge > b.edge; });
  if (static_cast<int>(out.size()) > set.max_blocks) out.resize(set.max_blocks);
  return out;
}

// The best move of one block, fitted, or one with no likelihood when nothing was tried.
WindowMove BestCarry(const GroupCalls& calls, const ChainState& st, const Candidate& c, const FitSettings& fit,
                     const FarBlockSettings& set, CarryScorer& carries, WindowScratch& scratch) {
  std::vector<WindowMove> guessed;
  const auto keep = [&guessed](WindowMove&& mv) { guessed.push_back(std::move(mv)); };
  carries.Score(calls, st, c.first, c.last, set.reach, true, keep);
  carries.Score(calls, st, c.first, c.last, set.reach, false, keep);
  WindowMove best;
  best.log_likelihood = -INFINITY;
  if (guessed.empty()) return best;
  const auto likelier = [](const WindowMove& a, const WindowMove& b) { return a.log_likelihood > b.log_likelihood; };
  const std::size_t n = std::min<std::size_t>(guessed.size(), static_cast<std::size_t>(set.fitted));
  std::partial_sort(guessed.begin(), guessed.begin() + static_cast<std::ptrdiff_t>(n), guessed.end(), likelier);
  std::vector<int> position_of(calls.num_markers, -1);
  for (int p = 0; p < static_cast<int>(st.order.size()); ++p) position_of[st.order[p]] = p;
  for (std::size_t j = 0; j < n; ++j) {
    WindowMove mv = guessed[j];
    ScoreWindow(calls, st, position_of, set.em_rounds, fit.max_rf, mv, scratch, /*start_given=*/true);
    if (mv.log_likelihood > best.log_likelihood) best = std::move(mv);
  }
  return best;
}

}  // namespace

int CarryFarBlocks(const GroupCalls& calls, ChainState& st, const FitSettings& fit, const FarBlockSettings& set) {
  if (st.order.size() < 5) return 0;
  CarryScorer carries;
  WindowScratch scratch;
  int moved = 0;
  // Blocks are picked once; a move shifts positions, so later blocks are found again by their
  // markers and skipped if they no longer stand together.
  for (const Candidate& c : OutstandingBlocks(st, set)) {
    Candidate now = c;
    if (moved > 0) {
      const auto at = std::search(st.order.begin(), st.order.end(), c.markers.begin(), c.markers.end());
      if (at == st.order.end()) continue;
      now.first = static_cast<int>(at - st.order.begin());
      now.last = now.first + (c.last - c.first);
    }
    const WindowMove best = BestCarry(calls, st, now, fit, set, carries, scratch);
    if (!(best.log_likelihood > st.log_likelihood + set.min_gain)) continue;
    ApplyWindow(calls, st, best);
    EvaluateChain(calls, st, nullptr);  // the vectors outside the window are stale now
    ++moved;
  }
  return moved;
}

}  // namespace gae
