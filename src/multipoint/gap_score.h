// A marker tried in a gap of an evaluated chain without moving anything else: the gap's
// interval is split in half on each side of it (no interference), and the chain's cached
// forward and backward vectors on either side make each gap cost one step per individual.
#pragma once

#include <cstdint>

#include "multipoint/chain_fit.h"

namespace gae {

// Log-likelihood, up to a constant the same for every gap, of `marker` placed in the gap after
// position q (q = -1: before the first marker; q = m - 1: after the last). The marker need not
// be in the chain; if it is, the gaps beside it count it twice and mean nothing.
double GapScore(const GroupCalls& calls, const ChainState& state, int32_t marker, int q);

}  // namespace gae
