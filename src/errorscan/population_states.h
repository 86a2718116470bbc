// Which genotype states a population can show at one marker, and how a pair of flanking
// states and a middle state become indices into the probability tables.
//
// The design codes (the family of population) are those of vocabulary/population.h. All indices
// here are 0-based.
#pragma once

#include <cstdint>
#include <string_view>

#include "vocabulary/population.h"

namespace gae {


// What the probability tables of a run depend on.
struct PopulationModel {
  int32_t design = kBiparentalDesign;
  int32_t type = 0;              // population type within the design
  int32_t mapping_function = 1;  // 1 Kosambi, 2 Haldane, 3 Morgan
};

// The population's states in table order, as genotype letters: "AH" for backcrosses to P1,
// "HB" for backcrosses to P2, "AB" for inbred and doubled-haploid lines, "AHB" for selfed
// generations, "ABCD" for clonal and four-way lines, "ABCDEFGH" for eight-way lines. Empty
// for a design or type that the tables do not cover.
std::string_view StateLetters(int32_t design, int32_t type);

// The letters of the one-marker (marginal) table: always A, H, B for bi-parental designs,
// whose segregation ratios are given over all three classes, and the states otherwise.
std::string_view MarginalLetters(int32_t design, int32_t type);

// Position of `letter` in `states`, or -1.
int32_t StateOf(std::string_view states, char letter);

// Index of the flanking pair (left, right) in a table with `num_states` states. Bi-parental
// and pure-line tables run left-major; the clonal table pairs the two parents' transmission
// patterns instead (first parent major), so its rows are not in plain order.
int32_t FlankPairIndex(int32_t design, int32_t num_states, int32_t left, int32_t right);

// Indices of an observed triple of letters: the flanking pair and the middle state. False when
// the design or type has no table or a letter is not one of its states.
struct TripleIndex {
  int32_t pair = 0;
  int32_t middle = 0;
};
bool IndexTriple(int32_t design, int32_t type, char left, char middle, char right,
                 TripleIndex& index);

}  // namespace gae
