// Markers far from their place: a start order built from pairs can leave a marker many places
// away from its neighbours, out of reach of the local moves, where it links to almost nothing.
// Each such marker is scanned against every gap of the chromosome; the best gap is then scored
// exactly as a move and taken if it raises the likelihood.
#pragma once

#include <vector>

#include "multipoint/chain_fit.h"

namespace gae {

struct RelocationSettings {
  double below_lod = 3.0;  // markers whose place is worth less than this are scanned
  double long_rf = 0.2;    // and markers with intervals longer than this on both sides
  int max_markers = 50;    // the weakest first
  int em_rounds = 3;
  double min_gain = 1e-3;
};

// `state` evaluated; `gains` per position (LinkageGains). Returns the markers moved; `state` is
// left evaluated (not refitted).
int RelocateStrays(const GroupCalls& calls, ChainState& state, const std::vector<double>& gains,
                   const FitSettings& fit, const RelocationSettings& settings);

}  // namespace gae
