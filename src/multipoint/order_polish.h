// Improving a marker order by the likelihood of the whole chromosome. Sweeps run along the
// order; at each position every marker is tried at each place within a reach of its own, and
// each window of neighbouring markers in every arrangement, blocks from it turned over or
// carried a few places (block_moves.h), each move scored from the cached
// vectors around it; the best move that raises the likelihood is taken at once. Between sweeps
// the frequencies and the error rate are fitted again over the whole chromosome, and the next
// sweep tries only the neighbourhoods of the last one's moves; sweeps stop when one finds
// nothing.
#pragma once

#include <cstdint>

#include "multipoint/chain_fit.h"

namespace gae {

struct PolishSettings {
  int reach = 4;         // positions a marker may travel in one move, either way
  int window = 3;        // markers permuted together
  int em_rounds = 1;     // EM rounds fitting a move's intervals (from the neighbours' sums)
  int max_block = 10;    // longest block turned over anywhere
  int end_block = 40;    // longest block turned over at either end of the chromosome
  int shift_block = 3;   // longest block carried along
  int shift_reach = 8;   // places a block is carried
  int max_sweeps = 10;
  double min_gain = 1e-3;  // natural-log gain a move must bring
};

struct PolishReport {
  int sweeps = 0;
  int moves = 0;
};

// `state` holds a fitted, evaluated chromosome; it is left fitted and evaluated at the polished
// order, never with a lower likelihood than it came with.
PolishReport PolishOrder(const GroupCalls& calls, ChainState& state, const FitSettings& fit,
                         const PolishSettings& settings);

}  // namespace gae
