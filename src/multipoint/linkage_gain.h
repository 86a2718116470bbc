// What each marker's place in an evaluated chain is worth: the log10 likelihood of the whole
// chain against that of the chain without the marker (its neighbours joined by one fitted
// interval) times that of the marker on its own.
#pragma once

#include <vector>

#include "multipoint/chain_fit.h"

namespace gae {

// One LOD per position of `state.order`.
std::vector<double> LinkageGains(const GroupCalls& calls, const ChainState& state, double max_rf);

}  // namespace gae
