#include "vocabulary/uniform_stream.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace gae {
namespace {

// The combined generator computed with 64-bit products, without Schrage's decomposition.
float Literal(long long& s1, long long& s2) {
  s1 = (40014 * s1) % 2147483563;
  s2 = (40692 * s2) % 2147483399;
  long long z = s1 - s2;
  if (z < 1) z += 2147483562;
  return static_cast<float>(z) * 4.656613e-10f;
}

TEST(UniformStream, MatchesTheLiteralRecurrenceFromTheDefaultSeeds) {
  UniformStream stream;
  long long s1 = UniformStream::kDefaultSeed1, s2 = UniformStream::kDefaultSeed2;
  double sum = 0;
  for (int i = 0; i < 100000; ++i) {
    const float u = stream.Next();
    ASSERT_EQ(u, Literal(s1, s2));
    ASSERT_GT(u, 0.0f);
    ASSERT_LE(u, 1.0f);
    sum += u;
  }
  EXPECT_NEAR(sum / 100000, 0.5, 0.005);
}

TEST(UniformStream, SeedCanBeSavedRestoredAndFixedFromTheEnvironment) {
  UniformStream stream;
  const UniformStream::Seed saved = stream.GetSeed();
  const float first = stream.Next();
  stream.SetSeed(saved);
  EXPECT_EQ(stream.Next(), first);

  ::setenv("GAENGINE_SEED", "12345", 1);
  UniformStream a, b;
  a.SeedFromClock();
  b.SeedFromClock();
  ::unsetenv("GAENGINE_SEED");
  EXPECT_EQ(a.GetSeed(), b.GetSeed());
  EXPECT_NE(a.GetSeed(), saved);
  EXPECT_EQ(a.Next(), b.Next());
}

}  // namespace
}  // namespace gae
