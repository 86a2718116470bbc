// The segregation test of a clonal F1 or double-cross marker: do the progeny classes that
// its category can tell apart follow 1:1:1:1 (ABCD), 1:1 (A=B, C=D) or 1:2:1 (two alleles in
// both parents)?
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace gae {

// Counts of the twelve types in the order AC, AD, BC, BD, XC, XD, AX, BX, AA, AB, BB, XX
// (stored letters A to K, then X).
using ClonalCounts = std::array<int32_t, 12>;
ClonalCounts CountClonalTypes(const char* types, int64_t num_individuals);

struct ClonalSegregation {
  float chi_square = 0.0f;   // NaN when no individual falls in a tested class
  float probability = 0.0f;  // Pr>ChiSq; 0.0 when the chi-square is not a number
};

// `category` 1 to 5. The expected count of a class is N times its share, N the sum of the
// tested counts.
ClonalSegregation ClonalSegregationChiSquare(int32_t category, const ClonalCounts& counts);

// The category as the input file spells it: 4 is "AB=CD" in the clonal F1 (population type 1)
// and "A=CB=D" in the double cross.
std::string_view ClonalCategoryText(int32_t population_type, int32_t category);

}  // namespace gae
