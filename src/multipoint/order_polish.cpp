#include "multipoint/order_polish.h"

#include <algorithm>
#include <cstdlib>

#include "multipoint/block_moves.h"
#include "multipoint/window_moves.h"

namespace gae {

namespace {

class Sweep {
 public:
  Sweep(const GroupCalls& calls, ChainState& st, const FitSettings& fit, const PolishSettings& set)
      : calls_(calls), st_(st), fit_(fit), set_(set), m_(static_cast<int>(st.order.size())),
        position_of_(calls.num_markers, -1) {
    for (int p = 0; p < m_; ++p) position_of_[st.order[p]] = p;
  }

  // Positions whose moves are tried; empty tries all. Returns the moves taken; `touched` gets
  // the positions each move changed.
  // `blocks`: whether block moves are tried. Returns the moves taken; `block_moves` counts
  // those that were block moves.
  int Run(const std::vector<bool>& wanted, std::vector<bool>& touched, bool blocks, int& block_moves) {
    int moves = 0;
    touched.assign(m_, false);
    for (int p = 0; p < m_; ++p) {
      if (!wanted.empty() && !wanted[p]) continue;
      ExtendForward(p - 1);
      best_.log_likelihood = st_.log_likelihood + set_.min_gain;
      found_ = false;
      TryReinsertions(p);
      TryWindows(p);
      if (blocks && BlockMayStart(p)) TryReversals(p);
      if (blocks) TryCarries(p);
      if (!found_) continue;
      if (screened_) {
        Refine();
        ++block_moves;
      }
      ApplyWindow(calls_, st_, best_);
      for (int q = best_.first; q <= best_.last; ++q) {
        position_of_[st_.order[q]] = q;
        touched[q] = true;
      }
      alpha_valid_ = best_.last;
      ++moves;
    }
    return moves;
  }

 private:
  // Forward vectors past the last move are stale; refresh them up to `to` (backward vectors
  // from the last move's start on are valid).
  void ExtendForward(int to) {
    if (to <= alpha_valid_) return;
    WindowMove refresh;
    refresh.first = alpha_valid_ + 1;
    refresh.last = to;
    refresh.markers.assign(st_.order.begin() + refresh.first, st_.order.begin() + to + 1);
    const int first_interval = refresh.first > 0 ? refresh.first - 1 : 0;
    refresh.rf.assign(st_.rf.begin() + first_interval,
                      st_.rf.begin() + first_interval + WindowIntervals(refresh.first, to, to - refresh.first + 1, m_));
    ApplyWindow(calls_, st_, refresh);
    alpha_valid_ = to;
  }

  void Consider(WindowMove& mv) {
    ScoreWindow(calls_, st_, position_of_, set_.em_rounds, fit_.max_rf, mv, scratch_);
    Keep(mv, false);
  }

  // Block moves come with their frequencies and are scored by one forward pass.
  void ConsiderBlock(WindowMove&& mv) {
    ScoreWindow(calls_, st_, position_of_, 0, fit_.max_rf, mv, scratch_, /*start_given=*/true);
    Keep(mv, true);
  }

  void Keep(const WindowMove& mv, bool screened) {
    if (mv.log_likelihood > best_.log_likelihood) {
      best_ = mv;
      found_ = true;
      screened_ = screened;
    }
  }

  // A block move taken is fitted like the others before it goes in (EM cannot lose).
  void Refine() {
    WindowMove fitted = best_;
    ScoreWindow(calls_, st_, position_of_, set_.em_rounds, fit_.max_rf, fitted, scratch_, /*start_given=*/true);
    if (fitted.log_likelihood > best_.log_likelihood) best_ = fitted;
  }

  // A block out of place starts after a wrong neighbour pair, and a wrong pair is an interval
  // longer than the block's first; elsewhere block moves are not tried, which keeps their
  // cost to a share of the chromosome.
  bool BlockMayStart(int p) const {
    return p == 0 || p + 1 >= m_ || st_.rf[p - 1] > st_.rf[p];
  }

  // Blocks from p turned over: every length up to the longest block, and longer ones that
  // touch either end of the chromosome. Blocks of up to the window's size are permuted already.
  void TryReversals(int p) {
    const int shortest = std::max(2, set_.window + 1);
    for (int k = shortest; k <= set_.max_block && p + k <= m_; ++k) ConsiderBlock(ReversalMove(st_, p, p + k - 1));
    if (p == 0)
      for (int k = set_.max_block + 1; k <= std::min(set_.end_block, m_); ++k) ConsiderBlock(ReversalMove(st_, 0, k - 1));
    const int k = m_ - p;
    if (p > 0 && k > set_.max_block && k <= set_.end_block) ConsiderBlock(ReversalMove(st_, p, m_ - 1));
  }

  // Blocks from p carried along: right when a long interval comes before them, left when one
  // follows them. Between them the two directions carry short blocks far and long blocks (the
  // markers a short block passes) a few places.
  void TryCarries(int p) {
    const auto keep = [this](WindowMove&& mv) { Keep(mv, true); };
    for (int k = 2; k <= set_.shift_block && p + k <= m_; ++k) {
      const int last = p + k - 1;
      if (BlockMayStart(p)) carries_.Score(calls_, st_, p, last, set_.shift_reach, true, keep);
      if (last == m_ - 1 || st_.rf[last] > st_.rf[last - 1])
        carries_.Score(calls_, st_, p, last, std::min(set_.shift_reach, p), false, keep);
    }
  }

  // A marker moved starts from the gap it closes and the one it lands in split: the sums of
  // the frequencies between new neighbours are too far off for one round of EM to mend when it
  // passes several markers. Over one or two, neither start is always the closer: both are tried.
  void TryReinsertions(int p) {
    for (int q = std::max(0, p - set_.reach); q <= std::min(m_ - 1, p + set_.reach); ++q) {
      if (q == p || q == p - 1) continue;  // a step to the left is the left neighbour's step right
      const WindowMove shifted = ShiftMove(st_, p, p, q > p ? q : q - 1, false);
      for (const bool given : {true, false}) {
        if (!given && std::abs(q - p) > 2) break;
        WindowMove mv = shifted;
        ScoreWindow(calls_, st_, position_of_, set_.em_rounds, fit_.max_rf, mv, scratch_, given);
        Keep(mv, false);
      }
    }
  }

  void TryWindows(int p) {
    if (set_.window < 3 || p + set_.window > m_) return;  // pairs are reinsertions already
    WindowMove mv;
    mv.first = p;
    mv.last = p + set_.window - 1;
    std::vector<int32_t> perm(st_.order.begin() + p, st_.order.begin() + p + set_.window);
    const std::vector<int32_t> current = perm;
    std::sort(perm.begin(), perm.end());
    do {
      if (OneMarkerMoved(current, perm)) continue;  // the reinsertions try those
      mv.markers = perm;
      Consider(mv);
    } while (std::next_permutation(perm.begin(), perm.end()));
  }

  // Whether `b` is `a` with at most one marker moved.
  static bool OneMarkerMoved(const std::vector<int32_t>& a, const std::vector<int32_t>& b) {
    for (int32_t x : a) {
      std::vector<int32_t> ra, rb;
      for (int32_t y : a)
        if (y != x) ra.push_back(y);
      for (int32_t y : b)
        if (y != x) rb.push_back(y);
      if (ra == rb) return true;
    }
    return false;
  }

  const GroupCalls& calls_;
  ChainState& st_;
  const FitSettings& fit_;
  const PolishSettings& set_;
  int m_;
  std::vector<int> position_of_;
  int alpha_valid_ = 1 << 30;  // a fresh evaluation leaves every vector valid
  WindowMove best_;
  bool found_ = false;
  bool screened_ = false;
  WindowScratch scratch_;
  CarryScorer carries_;
};

}  // namespace

PolishReport PolishOrder(const GroupCalls& calls, ChainState& st, const FitSettings& fit,
                         const PolishSettings& settings) {
  PolishReport report;
  const int m = static_cast<int>(st.order.size());
  if (m < 3) return report;
  // After the first sweep only the neighbourhoods of the last sweep's moves are tried again:
  // elsewhere the refit moves the frequencies too little to change a verdict.
  std::vector<bool> wanted, touched;
  int block_moves = 0;
  const int near = settings.reach + settings.window;
  while (report.sweeps < settings.max_sweeps) {
    ++report.sweeps;
    // Block moves mend what a start order got wrong at large; once a sweep takes none, the
    // refits that follow move frequencies too little to make one worth its cost.
    const bool blocks = report.sweeps == 1 || block_moves > 0;
    block_moves = 0;
    const int moves = Sweep(calls, st, fit, settings).Run(wanted, touched, blocks, block_moves);
    report.moves += moves;
    if (moves == 0) break;
    FitChain(calls, st, fit);
    wanted.assign(m, false);
    for (int p = 0; p < m; ++p)
      if (touched[p])
        for (int q = std::max(0, p - near); q <= std::min(m - 1, p + near); ++q) wanted[q] = true;
  }
  return report;
}

}  // namespace gae
