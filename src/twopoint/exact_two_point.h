// Exact two-point estimates: the recombination frequency that maximises the likelihood of the
// observed classes over the whole range, and the LOD as the log10 likelihood ratio of that
// maximum against free recombination (r = 1/2). They stand beside the engines that the
// exports use, whose iterations start from a single guess and can end at a border or at a
// complete-data LOD; these search the whole range first and refine the best stretch, so no
// start can trap them.
//
// Every search runs over r in [0, 1/2] on a grid dense near 0 (where the likelihood is
// sharpest), then from the best grid points by safeguarded Newton steps on the models' own
// score and curvature. Results keep the stores' conventions, so every stage reads them alike.
#pragma once

#include <cstdint>

namespace gae {

struct ExactTwoPoint {
  float rec_freq = 0.5f;
  float lod = 0.0f;
};

// A bi-parental pair: both phases (the table as it stands and with one marker's alleles
// exchanged) are searched over [0, 1/2]; when the exchanged phase holds the higher maximum r'
// the frequency is 1 - r', as the pair store keeps it. An empty table, or one whose
// likelihood is as high at 1/2 as anywhere, gives 0.5 and LOD 0. An unknown population type
// or pair code gives a frequency that is not a number (the store keeps such a pair unlinked).
ExactTwoPoint ExactTwoPointEstimate(int population_type, int pair_code, const float cells[9]);

// The same from both phases read already: `cells` with `pair_code` and the exchanged table
// `swapped` with `second_code` (0 when the type has no second phase).
ExactTwoPoint ExactTwoPointOfPhases(int population_type, int pair_code, const float cells[9], int second_code,
                                    const float swapped[9]);

// ln L of the table in the phase as given, at r: sum of N ln P over the counted classes,
// minus infinity when a counted class cannot occur at r. NaN for an unknown type or code.
double TwoPointLogLikelihood(int population_type, int pair_code, const float cells[9], double r);

}  // namespace gae
