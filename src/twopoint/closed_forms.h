// Closed-form maximum-likelihood estimates of the recombination frequency: where the
// likelihood equation is linear, or quadratic in a power of 1 - r.
#pragma once

namespace gae {

// Sets `rec_freq` and returns true when the type and pair code have a closed form; returns
// false for the pairs that need the iteration (F2 with a co-dominant marker, F3, the selfed
// backcrosses) and for an unknown type. `n` is the sum of the cells. Nothing is clamped.
bool TwoPointClosedForm(int population_type, int pair_code, const float cells[9], float n,
                        float& rec_freq);

}  // namespace gae
