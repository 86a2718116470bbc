#include "input/marker_decoders.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "vocabulary/fixed_format.h"
#include "frame/process_state.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

struct Decoded {
  bool ok = false;
  int code = 0;
  std::string letters;
  int32_t category = 1;
};

// Decodes one row of blank-separated tokens with the decoder of `tool_code`.
Decoded Decode(int tool_code, int population_type, const std::string& row,
               const std::string& category = "") {
  std::vector<MarkerToken> tokens;
  std::istringstream in(row);
  for (std::string item; in >> item;) tokens.emplace_back(item);
  Decoded d;
  d.letters.assign(tokens.size(), '?');
  const std::string field = fmt::PadRight(category, 8);
  MessageCode() = 0;
  ::testing::internal::CaptureStdout();
  d.ok = DecodeMarkerRow(tool_code, population_type, MarkerRow{1, field, tokens},
                         std::span<char>(d.letters.data(), d.letters.size()), d.category);
  ::testing::internal::GetCapturedStdout();
  d.code = MessageCode();
  return d;
}

class Decoders : public testing::InTempDir {};

TEST_F(Decoders, BiparentalTokensAreReadByTheirFirstTwoCharacters) {
  // Every spelling of each class, in an F2 where no letter is folded.
  const Decoded d = Decode(104, 7,
                           "2 A AA 1 H AB BA 0 B BB 12 AH HA AX XA A* *A A_ _A D "
                           "10 BH HB BX XB B* *B B_ _B R -1 X XX * ** AAA BBx -12");
  EXPECT_EQ(d.letters, "AAAHHHHBBBDDDDDDDDDDRRRRRRRRRRXXXXXAB" "X");
  EXPECT_EQ(d.code, 2209);  // all classes at once: no category fits
  // Case counts: "aa" is no token.
  EXPECT_EQ(Decode(104, 7, "A B aa").code, 2202);
}

TEST_F(Decoders, EachBiparentalGroupFoldsWhatItCannotShow) {
  struct Case {
    int population_type;
    const char* row;
    const char* letters;
    int category;
  };
  const Case cases[] = {
      {1, "A H X H", "AHXH", 1},      // backcross to P1: codominant
      {9, "A D H X", "AXHX", 1},      // a dominant score says nothing there and becomes X
      {2, "B H R B", "BHXB", 1},      // backcross to P2: recessive scores become X
      {4, "A H B B", "AXBB", 1},      // RIL: a heterozygote is missing
      {17, "2 0 1 -1", "ABXX", 1},
      {7, "B D D X", "BDDX", 12},     // F2 dominant: P1 and F1 alike
      {7, "12 0 12 12", "DBDD", 12},  // the token "12" stays D
      {13, "A R R A", "ARRA", 10},    // recessive: F1 and P2 alike
      {8, "A H B D", "AHBD", 0},      // D mixed with H cannot be classed
  };
  for (const Case& c : cases) {
    const Decoded d = Decode(107, c.population_type, c.row);
    EXPECT_EQ(d.letters, c.letters) << c.population_type << ": " << c.row;
    EXPECT_EQ(d.category, c.category) << c.population_type << ": " << c.row;
    EXPECT_EQ(d.code, c.category == 0 ? 2209 : 0) << c.population_type << ": " << c.row;
  }
}

TEST_F(Decoders, SegmentLinesAndFamilies) {
  Decoded d = Decode(109, 0, "2 D A AA 0 B BB -1 X XX * **");
  EXPECT_TRUE(d.ok);
  EXPECT_EQ(d.letters, "AAAABBBXXXXX");
  EXPECT_EQ(d.category, 1);
  EXPECT_EQ(Decode(109, 0, "B B X").code, 2211);

  // Families of RILs lose their heterozygotes; backcross families keep them.
  d = Decode(110, 4, "2 1 0 -1 AB");
  EXPECT_EQ(d.letters, "AXBXX");
  EXPECT_EQ(Decode(110, 1, "2 1 0 -1 AB").letters, "AHBXH");
  // No polymorphism test: a marker of one class passes.
  EXPECT_TRUE(Decode(110, 4, "A A A").ok);
}

TEST_F(Decoders, ClonalAndPureLineCategoriesTheirTypesAndLetters) {
  const struct {
    int tool_code, population_type;
    const char *row, *field, *letters;  // letters nullptr: not checked
    int32_t category;                   // -1: not checked
    int code;
  } cases[] = {
      {20, 1, "AC AD BC BD XX", "ABCD", "ABCDX", 1, 0},
      {20, 1, "XC XD XX", "A=B", "EFX", 2, 0},
      {20, 2, "AX BX", "C=D", "GH", 3, 0},
      {20, 1, "AA AB BB", "AB=CD", "IJK", 4, 0},
      {20, 2, "AA AB", "A=CB=D", nullptr, 4, 0},
      {20, 2, "AA BB", "A=DB=C", nullptr, 5, 0},
      {20, 1, "XX XX", "ABCD", nullptr, -1, 2217},  // no data fails the category's polymorphism test
      // Pure lines. ABAB: the third founder carries A's allele and the fourth B's.
      {30, 2, "A B C D X", "ABAB", "ABABX", 1212, 0},
      {30, 1, "D C B A", "ABCC", "CCBA", 1233, 0},
      {30, 2, "A C X C", "AACC", "ACXC", 1133, 0},  // B and D carry the alleles of A and C
      {30, 2, "A B C D", "ABCD", nullptr, 1234, 0},
      // Eight founders: the category reads as an eight-digit number, H counting 8.
      {30, 4, "A B C D E F G H", "ABCDEFGH", nullptr, 12345678, 0},
      {30, 4, "A H A H", "ABCDEFGA", "AAAA", -1, 2229},
      // Two-letter and lower-case tokens are other tokens to the count test.
      {30, 2, "A BB", "ABCD", nullptr, -1, 2228},
      {30, 2, "A a", "ABCD", nullptr, -1, 2228},
      {30, 2, "A B", "AB", nullptr, -1, 2227},  // the field is too short for four
  };
  for (const auto& c : cases) {
    const Decoded d = Decode(c.tool_code, c.population_type, c.row, c.field);
    EXPECT_EQ(d.code, c.code) << c.field << ": " << c.row;
    if (c.letters != nullptr) {
      EXPECT_EQ(d.letters, c.letters) << c.field << ": " << c.row;
    }
    if (c.category >= 0) {
      EXPECT_EQ(d.category, c.category) << c.field << ": " << c.row;
    }
  }
}

}  // namespace
}  // namespace gae
