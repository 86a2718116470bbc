// The small numeric routines behind ordering: an ascending sort that also returns the
// permutation, for reals and for integers, and a random sample without replacement.
#pragma once

#include <cstdint>

#include "vocabulary/uniform_stream.h"

namespace gae {

// Ascending sort of values[0..n-1] into sorted[0..n-1]; perm[k] is the 1-based input position
// of the k-th smallest. Equal keys keep their input order (the sort is stable), so the earlier
// of two equal edges or markers comes first. A NaN is placed after every number, NaNs in input
// order: a value that is not a number is never among the smallest.
void SVRGP(int32_t n, const float* values, float* sorted, int32_t* perm);
// The same for integers.
void SVIGP(int32_t n, const int32_t* values, int32_t* sorted, int32_t* perm);

// Draws `count` different numbers from 1..population without replacement into sample[0..],
// each number equally likely, taking one uniform draw from `random` per number. The sample is
// returned in the order of the draw, not sorted: the first number drawn comes first. A count
// above the population draws the whole population; a count below 1 draws nothing.
void RNSRI(int32_t count, int32_t population, UniformStream& random, int32_t* sample);

}  // namespace gae
