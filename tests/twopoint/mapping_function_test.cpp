// Map distance and recombination frequency.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "twopoint/mapping_function.h"

namespace gae {
namespace {

constexpr int kKosambi = 1, kHaldane = 2, kMorgan = 3;

TEST(MappingFunction, DistancesByHand) {
  // r = 0.1: Kosambi 25 ln(1.2 / 0.8) = 10.136628, Haldane -50 ln 0.8 = 11.157178, Morgan 10.
  EXPECT_NEAR(MapRecToDistance(kKosambi, 0.1f), 10.136628f, 2e-5f);
  EXPECT_NEAR(MapRecToDistance(kHaldane, 0.1f), 11.157178f, 2e-5f);
  EXPECT_NEAR(MapRecToDistance(kMorgan, 0.1f), 10.0f, 1e-5f);
  // d = 20 cM: Kosambi 0.5 (e^0.8 - 1) / (e^0.8 + 1) = 0.1899745, Haldane 0.5 (1 - e^-0.4)
  // = 0.1648400, Morgan 0.2.
  EXPECT_NEAR(MapDistanceToRec(kKosambi, 20.0f), 0.1899745f, 1e-6f);
  EXPECT_NEAR(MapDistanceToRec(kHaldane, 20.0f), 0.1648400f, 1e-6f);
  EXPECT_NEAR(MapDistanceToRec(kMorgan, 30.0f), 0.3f, 1e-7f);
}

TEST(MappingFunction, TheTwoDirectionsAreInverse) {
  for (int code : {kKosambi, kHaldane, kMorgan}) {
    for (float d : {0.5f, 3.0f, 17.0f, 42.0f}) {
      EXPECT_NEAR(MapRecToDistance(code, MapDistanceToRec(code, d)), d, 2e-4f * d) << code;
    }
  }
}

TEST(MappingFunction, FrequencyEdges) {
  for (int code : {kKosambi, kHaldane, kMorgan}) {
    // No recombination is no distance, and a plain zero, never -0.
    const float at_zero = MapRecToDistance(code, 0.0f);
    EXPECT_EQ(at_zero, 0.0f) << code;
    EXPECT_FALSE(std::signbit(at_zero)) << code;
    // Free recombination, and what 32 bits cannot tell from it.
    EXPECT_EQ(MapRecToDistance(code, 0.5f), kUnlinkedDistance);
    EXPECT_EQ(MapRecToDistance(code, 0.50000001f), kUnlinkedDistance);
    // Above 1/2 the pair is linked in the other phase: 1 is 0, 0.75 is 0.25.
    EXPECT_EQ(MapRecToDistance(code, 1.0f), 0.0f);
    EXPECT_EQ(MapRecToDistance(code, 0.75f), MapRecToDistance(code, 0.25f));
    // Outside 0..1 and NaN: unlinked.
    EXPECT_EQ(MapRecToDistance(code, -0.01f), kUnlinkedDistance);
    EXPECT_EQ(MapRecToDistance(code, 1.01f), kUnlinkedDistance);
    EXPECT_EQ(MapRecToDistance(code, std::numeric_limits<float>::quiet_NaN()), kUnlinkedDistance);
  }
  EXPECT_EQ(MapRecToDistance(4, 0.1f), kUnlinkedDistance);
}

TEST(MappingFunction, DistanceEdges) {
  for (int code : {kKosambi, kHaldane, kMorgan}) {
    EXPECT_EQ(MapDistanceToRec(code, -1.0f), 0.0f);
    EXPECT_EQ(MapDistanceToRec(code, 999.0f), 0.5f);
    EXPECT_EQ(MapDistanceToRec(code, kUnlinkedDistance), 0.5f);
  }
  // Morgan's line passes 1/2 at 50 cM and is capped there: 60 cM is 0.5, not 0.6.
  EXPECT_EQ(MapDistanceToRec(kMorgan, 60.0f), 0.5f);
  // The other two approach 1/2 without reaching it before 999 cM.
  EXPECT_LT(MapDistanceToRec(kHaldane, 900.0f), 0.5f + 1e-7f);
  EXPECT_LE(MapDistanceToRec(kKosambi, 998.0f), 0.5f);
  EXPECT_EQ(MapDistanceToRec(0, 10.0f), 0.5f);
}

}  // namespace
}  // namespace gae
