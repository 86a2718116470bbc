// Clonal F1 (two heterozygous parents AB x CD) and double cross ((AA x BB) x (CC x DD)).
//
// The category says which parental alleles the marker tells apart: "ABCD" all four, "A=B" only
// the second parent's (C or D), "C=D" only the first parent's, and "AB=CD", "A=CB=D",
// "A=DB=C" a marker with two alleles in both parents. A token is the progeny's genotype: the
// allele from the first parent, then the one from the second, X where it cannot be told.
#include <array>
#include <string>

#include "vocabulary/fixed_format.h"
#include "input/marker_decoders.h"

namespace gae {

namespace {

constexpr int kTypes = 12;
// The two-letter types and the letter each is stored as.
constexpr std::array<const char*, kTypes> kTypeText = {"AC", "AD", "BC", "BD", "XC", "XD",
                                                       "AX", "BX", "AA", "AB", "BB", "XX"};
constexpr std::array<char, kTypes> kTypeLetter = {'A', 'B', 'C', 'D', 'E', 'F',
                                                  'G', 'H', 'I', 'J', 'K', 'X'};
enum Type { AC, AD, BC, BD, XC, XD, AX, BX, AA, AB, BB, XX };

struct CategoryRule {
  const char* text;
  int32_t value;
  std::initializer_list<int> legal;        // the types the category allows, XX last
  std::initializer_list<int> informative;  // a marker showing one of these alone (with XX) is useless
  int complete_code;                       // legal types do not add up to the population
  int polymorphism_code;
};

// The codes of the first column print the words of their neighbours; the pairing of code and
// text is the program's and stays.
const CategoryRule kRules[] = {
    {"ABCD", 1, {AC, AD, BC, BD, XX}, {AC, AD, BC, BD}, 2216, 2217},
    {"A=B", 2, {XC, XD, XX}, {XC, XD}, 2218, 2219},
    {"C=D", 3, {AX, BX, XX}, {AX, BX}, 2220, 2221},
    {"AB=CD", 4, {AA, AB, BB, XX}, {AA, AB, BB}, 2222, 2223},
    {"A=CB=D", 4, {AA, AB, BB, XX}, {AA, AB, BB}, 2222, 2223},
    {"A=DB=C", 5, {AA, AB, BB, XX}, {AA, AB, BB}, 2222, 2223},
};

// Clonal F1 parents cannot show the double-cross phases and vice versa.
const CategoryRule* FindCategory(int32_t population_type, std::string_view field) {
  const bool double_cross = population_type == 2;
  for (const CategoryRule& rule : kRules) {
    const std::string_view text(rule.text);
    const bool allowed = double_cross ? text != "AB=CD" : (text != "A=CB=D" && text != "A=DB=C");
    if (allowed && field == fmt::PadRight(text, field.size())) return &rule;
  }
  return nullptr;
}

int TypeOf(MarkerToken token) {
  for (int t = 0; t < kTypes; ++t) {
    if (token == MarkerToken(kTypeText[t])) return t;
  }
  return -1;
}

bool Allows(const CategoryRule& rule, int type) {
  for (int t : rule.legal) {
    if (t == type) return true;
  }
  return false;
}

}  // namespace

bool DecodeClonal(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                  int32_t& category) {
  const CategoryRule* rule = FindCategory(population_type, row.category);
  if (rule == nullptr) {
    return MarkerFailure(population_type == 2 ? 2214 : 2213, row.marker, 0, row.category);
  }

  std::array<int64_t, kTypes> count{};
  std::size_t first_foreign = row.tokens.size();  // the first token the category does not allow
  for (std::size_t l = 0; l < row.tokens.size(); ++l) {
    const int type = TypeOf(row.tokens[l]);
    if (type < 0)
      return MarkerFailure(2215, row.marker, static_cast<int>(l + 1), row.tokens[l].Text());
    ++count[type];
    letters[l] = kTypeLetter[type];
    if (first_foreign == row.tokens.size() && !Allows(*rule, type)) first_foreign = l;
  }

  const auto total = static_cast<int64_t>(row.tokens.size());
  int64_t legal = 0;
  for (int t : rule->legal) legal += count[t];
  if (legal != total) {
    // The one message of this family with a token names the first one out of place.
    return MarkerFailure(rule->complete_code, row.marker, static_cast<int>(first_foreign + 1),
                         row.tokens[first_foreign].Text());
  }
  for (int t : rule->informative) {
    if (count[XX] + count[t] == total) return MarkerFailure(rule->polymorphism_code, row.marker, 0, {});
  }
  category = rule->value;
  return true;
}

}  // namespace gae
