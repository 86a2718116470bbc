// The design check on bred populations of every kind, each declared as every kind: a declared
// type that expects other classes or ratios than the bred one must be refused with the bred type
// (or one that segregates alike) suggested; the bred type itself must pass.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "input/biparental_calls.h"
#include "prep/design_check.h"
#include "support/breeder.h"
#include "vocabulary/population.h"

namespace gae {
namespace {

// Letters of `individuals` plants of `type` at 30 loci 10 cM apart, by marker.
std::vector<std::string> Bred(int type, int individuals, uint64_t seed) {
  std::vector<double> positions;
  for (int k = 0; k < 30; ++k) positions.push_back(10.0 * k);
  testing::Breeder breeder = testing::Breeder::AtPositions(positions, seed);
  std::vector<std::string> letters(positions.size());
  for (int i = 0; i < individuals; ++i) {
    const testing::Plant plant = breeder.Biparental(type);
    for (std::size_t m = 0; m < positions.size(); ++m) letters[m] += testing::BiparentalLetter(plant, static_cast<int>(m));
  }
  return letters;
}

// Two types a segregation test cannot tell apart: the same letters and the same ratios.
bool Alike(int a, int b) {
  const ClassRatios x = ExpectedRatios(a), y = ExpectedRatios(b);
  return LegalBiparentalLetters(a) == LegalBiparentalLetters(b) && x.p2 == y.p2 && x.p1 == y.p1 && x.p0 == y.p0;
}

TEST(DesignCheck, EveryBredTypeDeclaredAsEveryTypeIsRefusedExactlyWhenTheTypesSegregateDifferently) {
  for (int bred = 1; bred <= 20; ++bred) {
    const std::vector<std::string> letters = Bred(bred, 200, 1000 + static_cast<uint64_t>(bred));
    for (int declared = 1; declared <= 20; ++declared) {
      SCOPED_TRACE("bred " + std::to_string(bred) + " declared " + std::to_string(declared));
      const DesignVerdict v = CheckDesign(declared, letters);
      if (Alike(bred, declared)) {
        EXPECT_FALSE(v.wrong_design) << DesignMessage(v);
        EXPECT_GE(v.fit_declared, 27);  // a rare distorted marker at p < 0.001 is allowed
        continue;
      }
      ASSERT_TRUE(v.wrong_design) << v.fit_declared;
      EXPECT_TRUE(std::any_of(v.better.begin(), v.better.end(), [&](int t) { return Alike(t, bred); }))
          << DesignMessage(v);
    }
  }
}

TEST(DesignCheck, TheMessageSpeaksOfTheCallsOrTheRatiosTheDeclaredTypeCannotHave) {
  const std::vector<std::string> f2 = Bred(7, 200, 7);
  const std::string as_ril = DesignMessage(CheckDesign(4, f2));
  // Half the calls of an F2 are heterozygotes.
  EXPECT_NE(as_ril.find("% of calls are H, which a RIL cannot show; an F2 fits 100% of the markers"),
            std::string::npos) << as_ril;
  const int share = std::stoi(as_ril);
  EXPECT_GE(share, 45);
  EXPECT_LE(share, 55);
  const std::string bc_as_f2 = DesignMessage(CheckDesign(7, Bred(1, 200, 9)));
  EXPECT_NE(bc_as_f2.find("of the markers reject the 1:2:1 segregation of an F2 (p < 0.001); a P1BC1F1"),
            std::string::npos) << bc_as_f2;
}

TEST(DesignCheck, ADistortedMarkerAmongFittingOnesIsNamedAndTheDesignStands) {
  std::vector<std::string> letters = Bred(7, 200, 11);
  std::string& skewed = letters[12];  // selection against P2: B calls become A
  std::replace(skewed.begin(), skewed.end(), 'B', 'A');
  const DesignVerdict v = CheckDesign(7, letters);
  EXPECT_FALSE(v.wrong_design);
  EXPECT_NE(std::find(v.distorted.begin(), v.distorted.end(), 12), v.distorted.end());
}

TEST(DesignCheck, RatioTextsAndArticles) {
  const std::vector<std::pair<int, std::string>> cases = {{7, "1:2:1"}, {1, "1:1"}, {5, "3:1"}, {8, "3:2:3"},
                                                          {12, "1:7"}, {15, "13:2:1"}};
  for (const auto& [type, text] : cases) EXPECT_EQ(SegregationRatioText(type), text) << type;
  EXPECT_EQ(TypeWithArticle(7), "an F2");
  EXPECT_EQ(TypeWithArticle(4), "a RIL");
  EXPECT_EQ(TypeWithArticle(3), "an F1DH");
}

}  // namespace
}  // namespace gae
