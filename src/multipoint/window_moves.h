// Scoring a change of order inside a window of an evaluated chromosome. The markers at
// positions first..last are replaced by `markers` (the same markers in another order, or fewer);
// the frequencies of the window's intervals, including those to its two neighbours, are fitted
// by a few rounds of EM with everything outside the window held. The score is the
// log-likelihood of the whole chromosome with that change, computed from the cached vectors of
// the window's neighbours only.
#pragma once

#include <cstdint>
#include <vector>

#include "multipoint/chain_fit.h"

namespace gae {

struct WindowMove {
  int first = 0, last = -1;         // positions replaced (inclusive)
  std::vector<int32_t> markers;     // what stands there after the move
  std::vector<double> rf;           // the window's intervals after the move
  double log_likelihood = 0;        // natural log, whole chromosome
};

// Scratch space reused between scores.
struct WindowScratch {
  std::vector<double> alpha, alpha_log, beta, beta_log, transitions;
  RunSums sums;
};

// Intervals of a window [first, last] of a chromosome of `m` markers: into it from the left (if
// first > 0), inside the new content, out of it to the right (if last < m - 1).
int WindowIntervals(int first, int last, int content, int m);

// A starting frequency for two markers made neighbours: the sum of the current frequencies
// between them (the current one if they already are neighbours), kept off 0 and capped.
double GuessFrequency(const ChainState& state, const std::vector<int>& position_of, int32_t x, int32_t y,
                      double max_rf);

// Fills move.rf with starting guesses (unless `start_given`: then move.rf holds them), fits
// and scores. Needs forward vectors valid at first - 1 and backward vectors valid at last + 1.
void ScoreWindow(const GroupCalls& calls, const ChainState& state, const std::vector<int>& position_of,
                 int em_rounds, double max_rf, WindowMove& move, WindowScratch& scratch,
                 bool start_given = false);

// Puts a scored move into the state and refreshes the vectors of the window; afterwards forward
// vectors are valid up to `last` and backward vectors from `first`.
void ApplyWindow(const GroupCalls& calls, ChainState& state, const WindowMove& move);

}  // namespace gae
