// The bottom layer: fixed-column numbers, the chi-square function, the uniform stream, the log
// and the message catalogue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "frame/process_state.h"
#include "frame/tool_profile.h"
#include "support/temp_dir.h"
#include "vocabulary/chi_square.h"
#include "vocabulary/fixed_format.h"
#include "vocabulary/message_catalogue.h"
#include "vocabulary/messages.h"
#include "vocabulary/run_log.h"
#include "vocabulary/uniform_stream.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::ReadLines;

TEST(FixedFormat, IntegerFieldsJustifyAndOverflowToAsterisks) {
  EXPECT_EQ(fmt::I(21, 8), "      21");
  EXPECT_EQ(fmt::I(-7, 4), "  -7");
  EXPECT_EQ(fmt::I(12345678, 8), "12345678");
  EXPECT_EQ(fmt::I(123456789, 8), "********");
  EXPECT_EQ(fmt::I(-1234567, 8), "-1234567");
  EXPECT_EQ(fmt::I(-12345678, 8), "********");
  // Message values: I8, left-adjusted, trailing blanks dropped.
  EXPECT_EQ(fmt::IntValue(21), "21");
  EXPECT_EQ(fmt::IntValue(-3), "-3");
  EXPECT_EQ(fmt::IntValue(123456789), "********");
}

TEST(FixedFormat, RealFieldsRoundHalfAwayFromZeroAndDropTheOptionalZero) {
  EXPECT_EQ(fmt::F(0.5, 8, 4), "  0.5000");
  EXPECT_EQ(fmt::F(1000.0, 12, 4), "   1000.0000");
  EXPECT_EQ(fmt::F(-12.34567, 10, 2), "    -12.35");
  EXPECT_EQ(fmt::F(0.125, 5, 2), " 0.13");   // 0.125 is exact in binary: a true tie
  EXPECT_EQ(fmt::F(-0.125, 6, 2), " -0.13");
  EXPECT_EQ(fmt::F(9.9996, 7, 3), " 10.000");
  EXPECT_EQ(fmt::F(0.5, 5, 4), ".5000");     // no room for the leading zero
  EXPECT_EQ(fmt::F(-0.5, 6, 4), "-.5000");
  EXPECT_EQ(fmt::F(0.5, 4, 4), "****");
  EXPECT_EQ(fmt::F(12345.678, 8, 2), "12345.68");
  EXPECT_EQ(fmt::F(123456.7, 8, 2), "********");
  EXPECT_EQ(fmt::F(-0.00001, 8, 4), "  0.0000");
  EXPECT_EQ(fmt::F(2.5, 4, 0), "  3.");
  // 0.15f lies slightly above 0.15: the apparent tie is decided on the true binary value.
  EXPECT_EQ(fmt::F(static_cast<double>(0.15f), 6, 1), "   0.2");
}

TEST(FixedFormat, NonFiniteValuesAsARuntimeWritesThem) {
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(fmt::F(std::nan(""), 8, 4), "     NaN");
  EXPECT_EQ(fmt::F(std::nan(""), 2, 1), "**");
  EXPECT_EQ(fmt::F(inf, 12, 4), "    Infinity");
  EXPECT_EQ(fmt::F(-inf, 12, 4), "   -Infinity");
  EXPECT_EQ(fmt::F(inf, 6, 2), "   Inf");
  EXPECT_EQ(fmt::F(-inf, 8, 2), "    -Inf");
  EXPECT_EQ(fmt::F(-inf, 3, 1), "***");
}

TEST(FixedFormat, RealFieldIsWithinHalfAUnitOfTheValue) {
  std::mt19937 rng(5);
  std::uniform_real_distribution<double> value(-5000.0, 5000.0);
  for (int k = 0; k < 2000; ++k) {
    const double v = value(rng);
    const int d = k % 5;
    const std::string field = fmt::F(v, 14, d);
    ASSERT_EQ(field.size(), 14u);
    const double back = std::strtod(field.c_str(), nullptr);
    EXPECT_LE(std::fabs(back - v), 0.5 * std::pow(10.0, -d) + 1e-9) << field << " for " << v;
  }
}

// Closed forms: 1 degree of freedom is erf(sqrt(x/2)); each further two degrees subtract
// (x/2)^(k/2) e^(-x/2) / Gamma(k/2 + 1), starting from 1 - e^(-x/2) for 2 degrees.
double Reference(double x, int df) {
  const double h = x / 2;
  double cdf = df % 2 == 1 ? std::erf(std::sqrt(h)) : 1 - std::exp(-h);
  for (int k = df % 2 == 1 ? 1 : 2; k < df; k += 2)
    cdf -= std::exp(k / 2.0 * std::log(h) - h - std::lgamma(k / 2.0 + 1));
  return cdf;
}

TEST(ChiSquare, SixDigitsOverTheWholeRange) {
  for (int df = 1; df <= 10; ++df) {
    for (double x = 0.001; x <= 100.0; x *= 1.37) {
      const float f = CHIDF(static_cast<float>(x), static_cast<float>(df));
      EXPECT_NEAR(f, Reference(static_cast<float>(x), df), 1e-6) << "x " << x << " df " << df;
    }
  }
}

TEST(ChiSquare, OutsideTheSupport) {
  // No mass below 0: a negative statistic (a negative LOD) has probability 0 below it.
  EXPECT_EQ(CHIDF(-2.5f, 1.0f), 0.0f);
  EXPECT_EQ(CHIDF(0.0f, 1.0f), 0.0f);
  EXPECT_EQ(CHIDF(std::numeric_limits<float>::infinity(), 3.0f), 1.0f);
  EXPECT_TRUE(std::isnan(CHIDF(std::numeric_limits<float>::quiet_NaN(), 1.0f)));
  EXPECT_TRUE(std::isnan(CHIDF(1.0f, 0.0f)));
  EXPECT_TRUE(std::isnan(CHIDF(1.0f, -1.0f)));
}

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

class RunLogSessions : public testing::InTempDir {};

TEST_F(RunLogSessions, NestedEntriesShareOneLogAndTheOuterOneClosesIt) {
  RunLog& log = Process().log;
  {
    LogSession outer("MAP");
    EXPECT_TRUE(outer.OpenedHere());
    {
      LogSession inner("MAP");
      EXPECT_FALSE(inner.OpenedHere());
      log.Write("inner");
    }
    EXPECT_TRUE(log.IsConnectedTo("MAP.log"));
    log.Write("outer");
  }
  EXPECT_FALSE(log.IsConnected());
  { LogSession again("MAP"); log.Write("second run"); }
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre("inner", "outer", "second run"));
}

TEST_F(RunLogSessions, AnotherToolsLogStacksAndTheOuterLogResumes) {
  RunLog& log = Process().log;
  LogSession outer("MAP");
  {
    LogSession inner("CDM");
    EXPECT_TRUE(inner.OpenedHere());
    log.Write("to cdm");
  }
  log.Write("to map");
  EXPECT_THAT(ReadLines("CDM.log"), ElementsAre("to cdm"));
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre("to map"));
}

TEST_F(RunLogSessions, WithoutALogALineStillReachesStandardOutput) {
  LogSession none(StageLogTool(7));
  ::testing::internal::CaptureStdout();
  EmitLine("hello");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "hello\n");
  EXPECT_FALSE(testing::FileExists(".log"));
}

class Messages : public testing::InTempDir {};

TEST_F(Messages, TimeLineIsWrittenInTwoPiecesOfOneRecord) {
  EXPECT_EQ(CpuTimeLine(1.0f, 4.0f),
            "   CPU time taken: 0.050         minutes or 3.000         seconds");
  LogSession log("MAP");
  MessageCode() = 1103;
  ::testing::internal::CaptureStdout();
  PrintFrameMessage("DLL MAPGrouping", 1.0f, 4.0f, 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), CpuTimeLine(1.0f, 4.0f) + "\n");
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre(CpuTimeLine(1.0f, 4.0f)));
}

TEST(Catalogue, CodesAreUniqueAndSortedForTheLookup) {
  int previous = 0;
  for (const CatalogueEntry& entry : Catalogue()) {
    EXPECT_GT(entry.code, previous);
    previous = entry.code;
  }
}

}  // namespace
}  // namespace gae
