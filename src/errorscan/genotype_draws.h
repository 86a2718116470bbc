// Observed genotypes as evidence for the state of a marker, and the random draw of a state.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "vocabulary/uniform_stream.h"

namespace gae {

// Whether an observed genotype already fixes the marker's state. `marker_class` is the
// marker's category: for bi-parental markers 1 co-dominant, 12 dominant, 10 recessive; for
// clonal markers 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or A=CB=D, 5 A=DB=C; for pure lines the
// founders' allele groups as a decimal number with one digit for each founder.
//  - X is never informative.
//  - Bi-parental: a co-dominant marker at A, H or B; a dominant marker only at B (D leaves A
//    or H open); a recessive marker only at A (R leaves H or B open).
//  - Clonal: category 1 at A to D; category 4 at A or D and category 5 at B or C (after
//    RewritePartialCodes); categories 2 and 3 never, as one parent's allele is unseen.
//  - Pure lines: a founder letter whose founder shares its allele with no other founder.
bool IsInformative(int32_t design, int32_t marker_class, char genotype);

// The states an observed genotype leaves open, as letters; empty when it leaves all open (X,
// or a letter the design does not know).
//  - Bi-parental: D leaves A, H; R leaves H, B; A, H and B themselves.
//  - Clonal: E (allele C from the second parent) leaves A, C; F leaves B, D; G (allele A
//    from the first parent) leaves A, B; H leaves C, D. For categories 4 and 5 the
//    heterozygote J leaves B, C and A, D, and I and K are the one state each that
//    RewritePartialCodes gives them.
//  - Pure lines: every founder that carries the same allele as the observed founder.
std::string AllowedStates(int32_t design, int32_t marker_class, char genotype);

// Clonal markers of categories 4 and 5 show AA (I) and BB (K) where the phase fixes the state:
// for category 4 (A=C, B=D) I is A (AC) and K is D (BD); for category 5 (A=D, B=C) I is B (AD)
// and K is C (BC). `genotypes` is [marker * num_individuals + individual].
void RewritePartialCodes(int32_t design, std::span<const int32_t> marker_classes,
                         int32_t num_individuals, std::span<char> genotypes);

// Draws a state: the probabilities are divided by their sum and their cumulative sums walked
// in state order, stopping at the first not below the uniform number (eight-way lines: the
// first above it). A cumulative sum that is not a number is passed, so a table of zeros or
// not-a-numbers ends in the last state. Returns the 0-based state.
int32_t DrawGenotype(int32_t design, std::span<const float> probabilities, UniformStream& random);

}  // namespace gae
