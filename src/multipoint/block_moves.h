// Moves of whole blocks of neighbouring markers: a block turned end for end, and a block
// carried a few places along the chromosome (either way round). A start order built from pairs
// can leave a stretch of markers inverted or displaced as a whole; moving one marker at a time
// then has to pass through orders worse than both ends, and never gets there.
//
// A block keeps its inner intervals; only the intervals at its new edges are new. They start
// from the gaps the block leaves (an inverted block keeps the gaps at its two ends; a carried
// block closes the gap behind it and splits the one it lands in), so a forward pass through the
// window alone scores the move with no fitting: a likelihood at some frequencies, which the
// fitted one can only exceed.
#pragma once

#include <utility>
#include <vector>

#include "multipoint/window_moves.h"

namespace gae {

// The block at positions [first, last] reversed.
WindowMove ReversalMove(const ChainState& state, int first, int last);

// The block [first, last] put after position `after` (outside the block, first - 1 excluded),
// reversed if asked.
WindowMove ShiftMove(const ChainState& state, int first, int last, int after, bool reversed);


// Scores every carry of the block [first, last] by 1 to `reach` places, right (`rightward`)
// or left, either way round, with ShiftMove's frequencies, and hands each scored move to
// `take`. The markers the block passes are run through once for
// all distances, so a carry costs a pass through the block alone. Needs forward vectors valid before the block and
// everything it may pass, backward vectors after them.
class CarryScorer {
 public:
  template <typename Take>
  void Score(const GroupCalls& calls, const ChainState& state, int first, int last, int reach, bool rightward,
             Take&& take) {
    const int passed = Prepare(calls, state, first, last, reach, rightward);
    for (int d = 1; d <= passed; ++d)
      for (bool reversed : {false, true}) take(ScoreOne(calls, state, first, last, d, rightward, reversed));
  }

 private:
  int Prepare(const GroupCalls& calls, const ChainState& state, int first, int last, int reach, bool rightward);
  WindowMove ScoreOne(const GroupCalls& calls, const ChainState& state, int first, int last, int d, bool rightward,
                      bool reversed);

  std::vector<int32_t> passed_markers_;
  std::vector<double> passed_transitions_, block_transitions_;
  std::vector<double> alpha_, alpha_log_, beta_, beta_log_, alpha2_, alpha2_log_;
};

}  // namespace gae
