// Chromosome segment substitution lines (CSL) and nested association mapping (NAM): lines
// scored against the recurrent or common parent, with a shorter list of accepted tokens.
#include <array>

#include "input/marker_decoders.h"

namespace gae {

namespace {

// Segment lines are homozygous: a dominant score "D" can only be the recurrent parent.
const TokenTable& SegmentLineTokens() {
  static const TokenTable table(
      {
          {'A', {"2", "D", "A", "AA"}},
          {'B', {"0", "B", "BB"}},
          {'X', {"-1", "X", "XX", "*", "**"}},
      },
      'Z');
  return table;
}

// "BA" is deliberately absent: the family files write heterozygotes as "AB" only.
const TokenTable& NestedAssociationTokens() {
  static const TokenTable table(
      {
          {'A', {"2", "A", "AA"}},
          {'H', {"1", "H", "AB"}},
          {'B', {"0", "B", "BB"}},
          {'X', {"-1", "X", "XX", "*", "**"}},
      },
      'Z');
  return table;
}

// Families of inbred or doubled-haploid lines cannot carry a heterozygote.
bool InbredFamily(int32_t population_type) {
  switch (population_type) {
    case 3: case 4: case 5: case 6: case 11: case 12: case 17: case 18: case 19: case 20:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool DecodeSegmentLines(const MarkerRow& row, std::span<char> letters, int32_t& category) {
  const TokenTable& tokens = SegmentLineTokens();
  int64_t a = 0, b = 0, x = 0;
  for (std::size_t l = 0; l < row.tokens.size(); ++l) {
    const char letter = tokens(row.tokens[l]);
    if (letter == 'Z') return MarkerFailure(2210, row.marker, 0, {});
    letters[l] = letter;
    a += letter == 'A';
    b += letter == 'B';
    x += letter == 'X';
  }
  const auto total = static_cast<int64_t>(letters.size());
  // A marker on which every line shows the same parent carries no segment. The code's text
  // speaks of an invalid type and has no line or token to name.
  if (x + a == total || x + b == total) return MarkerFailure(2211, row.marker, 0, {});
  category = 1;
  return true;
}

bool DecodeNestedAssociation(int32_t population_type, const MarkerRow& row,
                             std::span<char> letters, int32_t& category) {
  const TokenTable& tokens = NestedAssociationTokens();
  const bool inbred = InbredFamily(population_type);
  for (std::size_t l = 0; l < row.tokens.size(); ++l) {
    char letter = tokens(row.tokens[l]);
    if (letter == 'Z')
      return MarkerFailure(2212, row.marker, static_cast<int>(l + 1), row.tokens[l].Text());
    if (inbred && letter == 'H') letter = 'X';
    letters[l] = letter;
  }
  // Families are tested one against another downstream; no polymorphism test here.
  category = 1;
  return true;
}

}  // namespace gae
