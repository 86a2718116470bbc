// Blocks of a few markers far from their place. A start order can leave one to four
// neighbouring markers many places away, linked well enough to stay out of the single-marker
// relocation (a marker left at the end of a chromosome is linked to its one neighbour), and
// the polish's short carries do not reach them. A block stands out by
// its edges: both intervals at them longer than any inside it (or an end of the chromosome).
// Each such block is carried to every place within a long reach, either way round, all scored
// at once from cached vectors at guessed frequencies; those guesses can be far off, so the
// best few of each block are fitted before one is taken.
#pragma once

#include "multipoint/chain_fit.h"

namespace gae {

struct FarBlockSettings {
  int min_block = 1;
  int max_block = 4;
  int reach = 150;       // places a block is carried, either way
  int max_blocks = 40;   // blocks tried, those with the longest edges first
  double edge_over_median = 2;  // edges longer than this many median intervals
  int fitted = 3;        // best-guessed carries of a block fitted by EM
  int em_rounds = 3;
  double min_gain = 1e-3;  // natural log
};

// `state` fitted and evaluated. Returns the blocks moved; `state` is left evaluated (not refitted).
int CarryFarBlocks(const GroupCalls& calls, ChainState& state, const FitSettings& fit,
                   const FarBlockSettings& settings);

}  // namespace gae
