#include "engine/tour_primitives.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>


namespace gae {
namespace {

using ::testing::ElementsAre;

// A matrix from points on a line: d(i, j) = |x_i - x_j|.
TourMatrix Line(const std::vector<float>& x) {
  const int32_t n = static_cast<int32_t>(x.size());
  TourMatrix d(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) d.Set(i, j, std::fabs(x[i - 1] - x[j - 1]));
  return d;
}

TEST(TourPrimitives, NearestNeighbourTakesTheLaterOfEqualCandidates) {
  // From city 2 at 0, cities 1 and 3 both lie at distance 1: the later in the working array
  // (after the swap of entries 1 and 2 the array reads 2 1 3 4) is 3.
  const TourMatrix d = Line({-1, 0, 1, 5});
  Tour tour;
  NearestNeighbourTour(d, 2, tour);
  EXPECT_THAT(tour, ElementsAre(2, 3, 1, 4));
  NearestNeighbourTour(d, 4, tour);
  EXPECT_THAT(tour, ElementsAre(4, 3, 2, 1));
}

TEST(TourPrimitives, LengthsByHand) {
  const TourMatrix d = Line({0, 1, 3, 7});
  const Tour tour = {1, 3, 2, 4};
  float total = 0, longest = 0, closing = 0;
  ClosedLength(d, tour, &total, &longest);
  EXPECT_EQ(total, 7.0f + 3.0f + 2.0f + 6.0f);
  EXPECT_EQ(longest, 7.0f);
  OpenLength(d, tour, &total, &closing);
  EXPECT_EQ(total, 3.0f + 2.0f + 6.0f);
  EXPECT_EQ(closing, 7.0f);
  // pairs (i>j) over (i-j)^2: d(3,1)/1 + d(2,1)/4 + d(2,3)/1 + d(4,1)/9 + d(4,3)/4 + d(4,2)/1
  EXPECT_FLOAT_EQ(PairWeightedSum(d, tour), 3.0f + 1.0f / 4 + 2.0f + 7.0f / 9 + 4.0f / 4 + 6.0f);
}

}  // namespace
}  // namespace gae
