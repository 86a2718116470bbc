// One- and two-marker genotype probabilities of a population (design code and type as in
// population_states.h).
//
// r is the recombination frequency of the interval; R = 2r / (1 + 2r) is the map expansion of
// repeated selfing, the chance that a recombinant inbred line carries a recombination between
// the two markers.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

// The selfing expansion R = 2r / (1 + 2r).
float InbredExpansion(float r);

// Probabilities of the states of one marker: for bi-parental designs the segregation ratios
// (P1 class, F1 class, P2 class) of the population type, over the letters A, H, B; 1/4 each for
// clonal and four-way designs, 1/8 each for eight-way designs. Empty if the design or type is
// unknown.
std::vector<float> MarginalProbabilities(int32_t design, int32_t type);

// Joint probability of the states of two markers, indexed by FlankPairIndex (left marker's
// state, right marker's state) over StateLetters(design, type). Empty if unknown.
//
// The F3 table (bi-parental type 8) keeps its double-heterozygote entry at (1 - 2r + 2r^2)/2,
// above the true (1 - 2r + 2r^2)^2 / 4, so that table sums to more than 1: imputation only
// uses it through normalised draws, which the over-weighting biases towards H given H.
std::vector<float> TwoLocusFromRec(int32_t design, int32_t type, float r);

// The same for two markers at map positions in cM, through the mapping function (1 Kosambi,
// 2 Haldane, 3 Morgan).
std::vector<float> TwoLocusProbabilities(int32_t design, int32_t type, int32_t mapping_function,
                                         float position1, float position2);

}  // namespace gae
