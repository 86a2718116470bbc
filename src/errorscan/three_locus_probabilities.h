// Genotype probabilities of a marker given its two flanking markers.
//
// r12, r23 and r13 are the recombination frequencies of left-middle, middle-right and
// left-right; r13 comes from the left-to-right distance through the mapping function, not
// from r12 and r23, so the mapping function's own interference is kept.
//
// Bi-parental populations (design 10): the table holds P(middle | left, right).
//  - Backcrosses and F1 doubled haploids (types 1 to 3): closed form, (1-r12)(1-r23)/(1-r13)
//    for A between A and A, (1-r12) r23 / r13 for A between A and B, the rest by complement.
//  - F1 recombinant inbred lines (type 4): the same form with R = 2r/(1+2r) in place of r. It
//    treats the inbred line as if its recombinations were independent along the chromosome,
//    which they are not: against lines bred to homozygosity it is off by up to about 0.03
//    at intervals of 10 to 20 cM. The two-locus margins are nevertheless exact.
//  - F2 (type 7): closed form as the product of the two gametes' chances over the pair's.
//  - All others: the population is bred generation by generation on the 36 three-locus
//    genotypes (generation_chain.h), the frequencies summed into observed triples and divided
//    by the sum over the middle state. Inbred lines are followed to homozygosity exactly, so
//    these tables agree with lines bred by repeated selfing. Types 17 and 18 use the tables of
//    9 and 10, whose numbers they share.
//
// Clonal and pure-line populations (designs 20, 31, 32): the table holds the joint chance of
// the whole triple, P(left, middle, right), the one-marker share 1/4 or 1/8 included: the
// clonal entry for A between A and A is (1-r12)^2 (1-r23)^2 / 4. Its entries over all
// triples sum to 1. The error rule reads it as it stands, so a middle genotype that differs
// from both neighbours is kept only with a chance of at most 1/4; imputation normalises it.
//  - Clonal F1 and double cross (20): two independent parental gametes, one factor for each
//    interval and parent.
//  - Four- and eight-way lines (31, 32): the founders' haplotypes are composed exactly through
//    every meiosis of the funnel (A x B, C x D, ...), and for recombinant inbred lines through
//    the inbred origins of the last individual, so the two-locus margins are the pure-line
//    two-locus tables.
//
// Every entry is clamped into [0, 1]; an entry that is not a number becomes 0.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

struct ThreeLocusTable {
  int32_t num_states = 0;  // 0 when the design or type has no table
  int32_t num_pairs = 0;   // num_states squared
  std::vector<float> values;  // [pair * num_states + middle], pair as FlankPairIndex
  float At(int32_t pair, int32_t middle) const { return values[pair * num_states + middle]; }
};

ThreeLocusTable ThreeLocusFromRec(int32_t design, int32_t type, float r12, float r23, float r13);

// Positions in cM of the left, middle and right markers, through the mapping function.
ThreeLocusTable ThreeLocusProbabilities(int32_t design, int32_t type, int32_t mapping_function,
                                        float left, float middle, float right);

// Brings a probability into [0, 1]; not-a-number becomes 0.
float ClampProbability(float p);

}  // namespace gae
