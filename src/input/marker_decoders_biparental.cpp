// Bi-parental populations (MAP, SDL, BIP, MET): F1 = P1 x P2 and the generations and
// backcrosses derived from it.
#include <array>
#include <string>

#include "input/biparental_calls.h"
#include "input/marker_decoders.h"

namespace gae {

namespace {

// How a population can show a marker: which letters its lines can carry.
enum class Group {
  kBackcrossP1,  // P1 x F1 and its second backcross: lines are A or H
  kBackcrossP2,  // P2 x F1 likewise: lines are H or B
  kInbred,       // doubled haploids and recombinant inbred lines: A or B
  kSegregating,  // F2, F3 and selfed backcrosses: every class
};

Group GroupOf(int32_t population_type) {
  switch (population_type) {
    case 1: case 9: return Group::kBackcrossP1;
    case 2: case 10: return Group::kBackcrossP2;
    case 3: case 4: case 5: case 6: case 11: case 12: case 17: case 18: case 19: case 20:
      return Group::kInbred;
    default: return Group::kSegregating;
  }
}

struct GroupRule {
  const char* legal;
  int code;   // a letter outside `legal`
  char from;  // folded letter ('\0': none)
  char to;
};

// In a backcross to P1 a dominant score (P1 or F1) tells nothing, since every line is one or
// the other; the same holds for a recessive score in a backcross to P2. In inbred and
// doubled-haploid lines a heterozygote is a scoring error and counts as missing.
GroupRule RuleOf(Group group) {
  switch (group) {
    case Group::kBackcrossP1: return {"AHDX", 2203, 'D', 'X'};
    case Group::kBackcrossP2: return {"HBRX", 2204, 'R', 'X'};
    case Group::kInbred: return {"AHBX", 2205, 'H', 'X'};
    case Group::kSegregating: return {"AHBDRX", 2206, '\0', '\0'};
  }
  return {"", 0, '\0', '\0'};
}

const TokenTable& BiparentalTokens() {
  static const TokenTable table(
      {
          {'A', {"2", "A", "AA"}},
          {'H', {"1", "H", "AB", "BA"}},
          {'B', {"0", "B", "BB"}},
          {'D', {"12", "AH", "HA", "AX", "XA", "A*", "*A", "A_", "_A", "D"}},
          {'R', {"10", "BH", "HB", "BX", "XB", "B*", "*B", "B_", "_B", "R"}},
          {'X', {"-1", "X", "XX", "*", "**"}},
      },
      'Z');
  return table;
}

}  // namespace

char BiparentalTokenLetter(std::string_view item) { return BiparentalTokens()(MarkerToken(item)); }

std::string_view LegalBiparentalLetters(int32_t population_type) {
  return RuleOf(GroupOf(population_type)).legal;
}

char FoldBiparentalLetter(int32_t population_type, char letter) {
  const GroupRule rule = RuleOf(GroupOf(population_type));
  if (std::string_view(rule.legal).find(letter) == std::string_view::npos) return '\0';
  return letter == rule.from ? rule.to : letter;
}

// 1 codominant, 12 dominant (P1 and F1 alike), 10 recessive (F1 and P2 alike), 0 impossible.
int32_t BiparentalCategory(int32_t population_type, std::span<const char> letters) {
  std::array<int64_t, 128> n{};
  for (const char letter : letters) ++n[static_cast<unsigned char>(letter) & 127];
  const auto total = static_cast<int64_t>(letters.size());
  const int64_t a = n['A'], h = n['H'], b = n['B'], d = n['D'], r = n['R'], x = n['X'];
  if (x == total) return 0;
  switch (GroupOf(population_type)) {
    case Group::kBackcrossP1:
      return a + h + x == total ? 1 : (d + x == total ? 12 : 0);
    case Group::kBackcrossP2:
      return h + b + x == total ? 1 : (r + x == total ? 10 : 0);
    case Group::kInbred:
      return a + b + x == total ? 1 : 0;
    case Group::kSegregating:
      if (a + h + b + x == total) return 1;
      if (b + d + x == total) return 12;
      return a + r + x == total ? 10 : 0;
  }
  return 0;
}

bool DecodeBiparental(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                      int32_t& category) {
  const TokenTable& tokens = BiparentalTokens();
  for (std::size_t l = 0; l < row.tokens.size(); ++l) {
    letters[l] = tokens(row.tokens[l]);
    if (letters[l] == 'Z')
      return MarkerFailure(2202, row.marker, static_cast<int>(l + 1), row.tokens[l].Text());
  }

  const GroupRule rule = RuleOf(GroupOf(population_type));
  for (std::size_t l = 0; l < letters.size(); ++l) {
    const char folded = FoldBiparentalLetter(population_type, letters[l]);
    if (folded == '\0')
      return MarkerFailure(rule.code, row.marker, static_cast<int>(l + 1), std::string(1, letters[l]));
    letters[l] = folded;
  }

  category = BiparentalCategory(population_type, letters);
  // One code covers a marker with no data and one that mixes classes the population cannot
  // tell apart (say D with A in an F2).
  if (category == 0) return MarkerFailure(2209, row.marker, 0, " ");
  return true;
}

}  // namespace gae
