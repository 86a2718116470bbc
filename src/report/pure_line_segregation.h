// The segregation test of a pure-line marker: do its lines fall into the allele groups in the
// shares the founders give them (a group carried by c of the n founders expects c / n of the
// lines)? The map reports print it beside each marker with the marker's category.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace gae {

// The founder pattern of a marker: one decimal digit per founder, founder 1 leftmost, equal
// digits for founders that share an allele. `founders` is 4 or 8.
int FounderDigit(int founders, int32_t pattern, int founder);  // founder 1-based

struct PureLineSegregation {
  std::array<int32_t, 9> counts{};  // lines showing A to H, then X
  float chi_square = 0.0f;          // NaN when a group expects no line
  float probability = 0.0f;         // Pr>ChiSq; NaN when the chi-square is not a number
};

// Group k (1 to n) expects (c N) / n lines, c the founders of digit k and N the lines of the n
// founder letters; the division is an integer one, as the reports have always taken it. Its
// observed count is that of the k-th letter, which is the letter the reader gives the group.
// Degrees of freedom: the groups with a founder, less one.
PureLineSegregation PureLineSegregationChiSquare(int founders, int32_t pattern,
                                                 const char* letters, int64_t num_lines);

// The category word of the marker table: the letters of the founders in group 1, in founder
// order ("A" for ABCD, "AC" for ABAB).
std::string PureLineCategoryText(int founders, int32_t pattern);

// The category field as the input file gives it, rebuilt from the pattern ("ABCB" from 1232).
std::string PureLinePatternField(int founders, int32_t pattern);

}  // namespace gae
