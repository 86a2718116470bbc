// Labels along a map bar: each wants to sit level with its marker's tick, but dense markers
// would print their names on top of one another. Spreading moves them apart as little as it can.
#pragma once

#include <vector>

namespace gaecli {

// New label centres for labels that want to sit at `wanted`, at least `pitch` apart, in the same
// order as the markers, inside [low, high] when they fit there. Among all such placements it
// takes the one of least total squared displacement. When they do not fit, they are centred on
// the middle of the wanted positions' range, clipped to start no earlier than is necessary.
std::vector<double> SpreadLabels(const std::vector<double>& wanted, double pitch, double low, double high);

}  // namespace gaecli
