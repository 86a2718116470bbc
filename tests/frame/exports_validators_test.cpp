#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using testing::ReadLines;
using testing::SourcePath;
using testing::WriteText;

using testing::CallOnPath;

class ValidatorExports : public testing::InTempDir {};

TEST_F(ValidatorExports, PredictionHeaderNamesComeBackAsCodesByTheCallersExtent) {
  const std::string path = SourcePath("examples/training_and_breeding.gsp");
  const int len = static_cast<int>(path.size());
  int num_traits = -1, flag = -1;
  GSPFindNumTraits(len, path.data(), &num_traits, &flag);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(num_traits, 2);

  // An extent of 3 leaves the third trait's cells as they were.
  std::vector<int> codes(3 * 19, -7);
  int training = 0;
  GSPFindTraitName(len, path.data(), 3, codes.data(), &training, &flag);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(training, 40);
  auto name = [&](int trait, int extent) {
    std::string s;
    for (int j = 0; j < 19; ++j) s += static_cast<char>(codes[j * extent + trait]);
    return s;
  };
  EXPECT_EQ(name(0, 3), "GrainYield         ");
  EXPECT_EQ(name(1, 3), "KernelWeight       ");
  EXPECT_EQ(codes[2], -7);
  EXPECT_EQ(codes[18 * 3 + 2], -7);
  // An extent of 1 copies the first trait only, in a one-column layout.
  std::vector<int> one(19, 0);
  GSPFindTraitName(len, path.data(), 1, one.data(), &training, &flag);
  codes = one;
  EXPECT_EQ(name(0, 1), "GrainYield         ");
  // No log at all.
  EXPECT_FALSE(testing::FileExists("GSP.log"));
}

TEST_F(ValidatorExports, PredictionFailuresRaiseTheFlagAndLeaveTheResultsAlone) {
  const struct {
    const char* text;
    const char* line;
  } cases[] = {
      {"! sizes\nmany\n", "--Input error: cannot read number of population size for training population!"},
      {"0\n5\n2\n", "--Input error: number of population size for training population out of range [1:]! value=0"},
      {"10\n", "--Input error: cannot read number of population size for breeding population!"},
      {"10\n-5\n2\n", "--Input error: number of population size for breeding population out of range [0:]! value=-5"},
      {"10\n0\nall\n", "--Input error: cannot read number of traits!"},
      {"10\n0\n0\n", "--Input error: number of traits out of range [1:]! value=0"},
  };
  for (const auto& c : cases) {
    WriteText("p.gsp", c.text);
    int num_traits = -3, flag = 0;
    ::testing::internal::CaptureStdout();
    GSPFindNumTraits(5, "p.gsp", &num_traits, &flag);
    const std::string out = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(flag & 1, 1) << c.text;
    EXPECT_EQ(num_traits, -3);
    EXPECT_EQ(out, std::string(c.line) + "\n");
  }
  WriteText("short.gsp", "10\n5\n3\nYield Height\n");
  int names[3 * 19] = {}, first = -3, flag = 0;
  ::testing::internal::CaptureStdout();
  GSPFindTraitName(9, "short.gsp", 3, names, &first, &flag);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "--Input error: cannot read trait names! TraitID=3\n");
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(first, -3);
  ::testing::internal::CaptureStdout();
  GSPFindTraitName(8, "none.gsp", 3, names, &first, &flag);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "none.gsp does not exist, and the program stops!\n");
  EXPECT_EQ(flag, 1);
}

TEST_F(ValidatorExports, AMissingWordSwitchesOffMinusHundredForTheRestOfTheProcess) {
  // -100 is the old missing value until some row uses a word: then it is a number, and here
  // one far below the others: Q1 = 10, Q3 = 12, (-100 - 10) / (10 - 12) = 55 ranges out.
  const std::string old_style =
      "1\n4\n1\n2\n1\n1\n5\n1\nC1 2\nm1 1 0\nm2 1 5\nm1 A B A B A\nm2 A A B B A\n"
      "Yield 10 11 12 13 -100\n";
  WriteText("old.bip", old_style);
  WriteText("new.bip", testing::ReadText("old.bip").replace(old_style.find("-100"), 4, "NA"));
  const std::string too_low = "           1           5   -100.0000     55.0000      TooLow";
  EXPECT_EQ(CallOnPath(CheckErrorBIP, "old.bip"), 0);
  EXPECT_THAT(ReadLines("BIP.log"), Not(Contains(too_low)));
  EXPECT_FALSE(Process().missing_word_seen);
  EXPECT_EQ(CallOnPath(CheckErrorBIP, "new.bip"), 0);
  EXPECT_TRUE(Process().missing_word_seen);
  EXPECT_EQ(CallOnPath(CheckErrorBIP, "old.bip"), 0);
  EXPECT_THAT(ReadLines("BIP.log"), Contains(too_low));
}

TEST_F(ValidatorExports, TheCheckCommandSaysOkOrFails) {
  const std::string cli = std::string(GAE_BINARY_DIR) + "/gaengine";
  const std::string good = SourcePath("examples/segment_lines.csl");
  EXPECT_EQ(std::system((cli + " check csl " + good + " > good.out").c_str()), 0);
  EXPECT_THAT(ReadLines("good.out"), ElementsAre("ok"));
  WriteText("bad.sdl", "21\n");
  EXPECT_NE(std::system((cli + " check SDL bad.sdl > bad.out 2> bad.err").c_str()), 0);
  // The library's lines go to the log (and to standard output with -v); the error to standard error.
  EXPECT_THAT(ReadLines("bad.out"), ElementsAre());
  EXPECT_THAT(ReadLines("bad.err"), ElementsAre("bad.sdl: PopulationType=21 out of range [1:20]!"));
  EXPECT_THAT(ReadLines("SDL.log"), Contains("--Error2004: PopulationType=21 out of range [1:20]!"));
  EXPECT_EQ(std::system((cli + " check GSP " + SourcePath("examples/training_and_breeding.gsp") +
                         " > gsp.out").c_str()),
            0);
  EXPECT_THAT(ReadLines("gsp.out"), ElementsAre("ok: 40 training lines, traits: GrainYield KernelWeight"));
}

}  // namespace
}  // namespace gae
