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

#include <vector>

#include "multipoint/window_moves.h"

namespace gae {

// The block at positions [first, last] reversed.
WindowMove ReversalMove(const ChainState& state, int first, int last);

// The block [first, last] put after position `after` (outside the block, first - 1 excluded),
// reversed if asked.
WindowMove ShiftMove(const ChainState& state, int first, int last, int after, bool reversed);

}  // namespace gae
