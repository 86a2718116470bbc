// The chi-square distribution function, shared by the two-point calculator and the
// segregation tests of the map reports.
#pragma once

namespace gae {

// Probability that a chi-square variable with `df` degrees of freedom is not above `x`.
// x at or below 0 gives 0: the distribution has no mass there, and a negative statistic (from
// a negative LOD, data that favour free recombination) then has a p-value of exactly 1.
// x = +infinity gives 1. A NaN x, or `df` not above 0 or NaN, gives NaN.
float CHIDF(float x, float df);

}  // namespace gae
