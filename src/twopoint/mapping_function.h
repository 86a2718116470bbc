// Map distance (centiMorgans) and recombination frequency. Mapping function codes:
// 1 Kosambi, 2 Haldane, 3 Morgan. A distance of 1000.0 stands for "unlinked".
#pragma once

namespace gae {

inline constexpr float kUnlinkedDistance = 1000.0f;

// A frequency outside 0..1, at 0.5 (within 1e-8) or NaN gives 1000.0. A frequency above 1/2
// is taken as its complement: the pair is linked in repulsion. A code outside 1..3 gives 1000.0.
float MapRecToDistance(int mapping_function, float rec_freq);
// A negative distance gives 0, a distance of 999 or more 0.5; results are capped at 0.5. A
// code outside 1..3 has no function and gives 0.5, the frequency of unlinked markers.
float MapDistanceToRec(int mapping_function, float distance);

}  // namespace gae
