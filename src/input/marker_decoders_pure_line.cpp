// Four-way and eight-way pure lines: doubled haploids or recombinant inbred lines from the
// cross of 4 or 8 homozygous founders. A line shows the founder whose allele it carries.
//
// The category field has one letter per founder and says which founders carry the same
// allele: each founder either has its own letter (A for the first, B for the second, ...) or
// repeats the letter of an earlier founder. "ABCD" tells all four apart, "ABAB" sees two
// alleles, and founders that share an allele become one letter in the data.
#include <array>
#include <string>

#include "vocabulary/fixed_format.h"
#include "input/marker_decoders.h"

namespace gae {

namespace {

int FounderCount(int32_t population_type) { return population_type >= 3 ? 8 : 4; }

char FounderLetter(int founder) { return static_cast<char>('A' + founder - 1); }

// 2224 to 2227: a field in which every founder has the same allele, or a letter that neither is
// the founder's own nor repeats an earlier founder.
bool CheckCategoryField(int marker, int founders, std::string_view field) {
  if (founders == 4 && field == fmt::PadRight("AAAA", field.size()))
    return MarkerFailure(2224, marker, 0, field);
  if (founders == 8 && field == fmt::PadRight("AAAAAAAA", field.size()))
    return MarkerFailure(2225, marker, 0, field);
  if (field.empty() || field[0] != 'A') return MarkerFailure(2226, marker, 0, field);
  for (int j = 2; j <= founders; ++j) {
    const char c = j <= static_cast<int>(field.size()) ? field[j - 1] : ' ';
    if (c != FounderLetter(j) && field.substr(0, j - 1).find(c) == std::string_view::npos)
      return MarkerFailure(2227, marker, j, field);
  }
  return true;
}

// Letters A..H counted in slots 0..7, X in slot 8.
std::array<int64_t, 9> CountLetters(std::span<const char> letters) {
  std::array<int64_t, 9> count{};
  for (char c : letters) {
    if (c >= 'A' && c <= 'H') ++count[c - 'A'];
    else if (c == 'X') ++count[8];
  }
  return count;
}

// The field read as a decimal number, A = 1 ... G = 7 and any other letter 8, the first founder
// being the highest digit: "ABCD" is 1234, "ABAB" 1212.
int32_t CategoryValue(int founders, std::string_view field) {
  int32_t value = 0;
  for (int j = 1; j <= founders; ++j) {
    const char c = j <= static_cast<int>(field.size()) ? field[j - 1] : ' ';
    value = value * 10 + ((c >= 'A' && c <= 'G') ? c - 'A' + 1 : 8);
  }
  return value;
}

}  // namespace

bool DecodePureLine(int32_t population_type, const MarkerRow& row, std::span<char> letters,
                    int32_t& category) {
  const int founders = FounderCount(population_type);
  const std::string_view field = row.category;
  if (!CheckCategoryField(row.marker, founders, field)) return false;

  // One count test rejects any other token, including the letter of a founder beyond the
  // population's (an E among four founders).
  int64_t seen = 0;
  for (const MarkerToken& token : row.tokens) {
    const char c = token.c[0];
    if (token.c[1] == ' ' && ((c >= 'A' && c < FounderLetter(founders + 1)) || c == 'X')) ++seen;
  }
  const auto total = static_cast<int64_t>(row.tokens.size());
  if (seen != total) return MarkerFailure(2228, row.marker, 0, {});

  for (std::size_t l = 0; l < row.tokens.size(); ++l) letters[l] = row.tokens[l].c[0];
  for (int p = 1; p <= founders; ++p) {
    if (field[p - 1] != FounderLetter(p)) continue;
    for (int q = p + 1; q <= founders; ++q) {
      if (field[q - 1] != field[p - 1]) continue;
      for (char& letter : letters) {
        if (letter == FounderLetter(q)) letter = FounderLetter(p);
      }
    }
  }

  const std::array<int64_t, 9> count = CountLetters(letters);
  for (int p = 1; p <= founders; ++p) {
    if (count[p - 1] + count[8] == total) return MarkerFailure(2229, row.marker, p, {});
  }
  category = CategoryValue(founders, field);
  return true;
}

}  // namespace gae
