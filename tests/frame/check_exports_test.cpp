// The exports that read a file's header and check it: sizes, records of the pairwise file,
// the prediction header and the check command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"
#include "vocabulary/pair_index.h"
#include "vocabulary/run_log.h"

namespace gae {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::CallOnPath;
using testing::ReadLines;
using testing::ReadText;
using testing::SourcePath;
using testing::WriteText;

class FindNumMarkers : public testing::InTempDir {
 protected:
  using Export = void (*)(int, const char*, int*, int*);
  int Call(Export fn, const std::string& path, int& count) {
    int status = -1;
    ::testing::internal::CaptureStdout();
    fn(static_cast<int>(path.size()), path.data(), &count, &status);
    ::testing::internal::GetCapturedStdout();
    return status;
  }
};

// The status and the count a header read leaves. A failure's cause and entry lines, and a
// missing file in general: map_tool_frame_test.
TEST_F(FindNumMarkers, StatusAndCountOfOddHeaders) {
  const struct {
    const char* text;  // the file "a.map", or none
    const char* path;
    int status, count;  // count -1: not checked
  } cases[] = {
      {"! nothing\n!but remarks\n", "a.map", 2003, -1},  // remarks alone are no header
      {"7\n2\n9\n10\n", "a.map", 2011, 2},                // the count is the read's scratch
      {"7\n1\n1\n3\n5\n", "a.map   ", 0, 3},             // trailing blanks are trimmed
      {"7\n1\n1\n99999999999\n5\n", "a.map", 2016, -1},
      {nullptr, "", 1002, -1},                               // an empty path is a missing file
  };
  for (const auto& c : cases) {
    if (c.text != nullptr) WriteText("a.map", c.text);
    int count = 0;
    EXPECT_EQ(Call(MAPFindNumMarkers, c.path, count), c.status) << c.text;
    if (c.count >= 0) {
      EXPECT_EQ(count, c.count) << c.text;
    }
    if (c.status != 0) {
      EXPECT_EQ(MessageCode(), 1101);  // the entry line leaves its own code
    }
  }
  // One log for the process: it grows from call to call.
  EXPECT_EQ(ReadLines("MAP.log").front(), "--Error2003: cannot read PopulationType!");
  EXPECT_EQ(ReadLines("MAP.log").back(), "--Error1101: error found in DLL! DLL name=DLL MAPFindNumMarkers");
  // A claim of two billion markers is refused or read, never a crash.
  WriteText("a.map", "7\n1\n1\n2000000000\n5\n");
  int count = 0;
  const int status = Call(MAPFindNumMarkers, "a.map", count);
  EXPECT_TRUE(status == 0 || status == 2028) << status;
  EXPECT_FALSE(Process().log.IsConnected());  // each call closes the log it opened
}

TEST_F(FindNumMarkers, ThePreparationToolsCheckTheirOwnPopulationTypes) {
  // The map tools' own ranges: map_tool_frame_test.
  WriteText("seven.txt", "7\n1\n1\n6\n40\n");
  int count = 0, status = -1;
  ::testing::internal::CaptureStdout();
  SNPFindNumMarkers(110, 9, "seven.txt", &count, &status);
  BINFindNumMarkers(2, 9, "seven.txt", &count, &status);
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(status, 0);
  EXPECT_THAT(ReadLines("SNP.log"), ::testing::Contains("--Error2005: PopulationType=7 out of range "
                                                        "[1:4,5:6,9:12,17:20]!"));
  EXPECT_THAT(ReadLines("BIN.log"), ElementsAre("DLL BINFindNumMarkers run successfully!"));
}

std::string MapFile(int type, const std::vector<std::pair<std::string, std::string>>& rows,
                    int individuals) {
  std::string text = "! test data\n" + std::to_string(type) + "\n2\n1\n" + std::to_string(rows.size()) +
                     "\n" + std::to_string(individuals) + "\n";
  for (const auto& [name, genotypes] : rows) text += name + " " + genotypes + "\n";
  int anchor = 0;
  for (const auto& row : rows) text += row.first + " " + std::to_string(anchor++ % 3) + "\n";
  return text;
}

std::vector<float> Records(const std::string& path) {
  const std::string bytes = ReadText(path);
  std::vector<float> values(bytes.size() / 4);
  std::memcpy(values.data(), bytes.data(), values.size() * 4);
  return values;
}

class CheckMap : public testing::InTempDir {};

// Backcross markers whose pairs are worked out by counting recombinants: r = recombinants / n
// over the individuals typed at both markers, LOD = sum N log10 P(r) - n log10 1/4.
TEST_F(CheckMap, RecordsHoldMinusTheLodAndTheFrequencyOfEachPairInTriangleOrder) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"M1", "A A A A A H H H H H"}, {"M2", "A A A A H H H H H A"}, {"M3", "A A H H H H H H A A"},
      {"M4", "X X X X X A H A H A"}, {"M5", "A H A H A X X X X X"}};
  WriteText("bc.map", MapFile(1, rows, 10));
  const testing::MapCheck out = testing::CheckMap("bc.map");
  ASSERT_EQ(out.status, 0);
  const std::vector<float> rec = Records("bc.LRD");
  ASSERT_EQ(rec.size(), 2u * 10);
  for (int i = 2; i <= 5; ++i) {
    for (int j = 1; j < i; ++j) {
      const std::string& gi = rows[i - 1].second;
      const std::string& gj = rows[j - 1].second;
      int n = 0, recombinant = 0;
      for (size_t k = 0; k < gi.size(); k += 2) {
        if (gi[k] == 'X' || gj[k] == 'X') continue;
        ++n;
        recombinant += gi[k] != gj[k];
      }
      const float first = rec[2 * (GroupPairIndex(i, j) - 1)];
      const float second = rec[2 * (GroupPairIndex(i, j) - 1) + 1];
      if (n == 0) {  // no individual typed at both: unlinked, no evidence
        EXPECT_EQ(first, 0.0f);
        EXPECT_EQ(second, 0.5f);
        continue;
      }
      // Above one half the exchanged phase gives the estimate, 1 - (n - recombinant) / n.
      const float r = 2 * recombinant <= n ? static_cast<float>(recombinant) / n
                                           : 1.0f - static_cast<float>(n - recombinant) / n;
      EXPECT_EQ(second, r) << i << "," << j;
      const double rr = std::min<double>(r, 1 - r);
      double lod = (n - std::min(recombinant, n - recombinant)) * std::log10((1 - rr) / 2) - n * std::log10(0.25);
      if (rr > 0) lod += std::min(recombinant, n - recombinant) * std::log10(rr / 2);
      EXPECT_NEAR(-first, std::max(lod, 0.0), 1e-4) << i << "," << j;
    }
  }
  EXPECT_EQ(out.Name(0), "M1" + std::string(33, ' '));
  EXPECT_THAT((std::vector<int>{out.anchor[4], out.a[3], out.h[3], out.x[3], out.category[0]}), ElementsAre(1, 3, 2, 5, 1));
  const PairStoreSettings& store = Process().pair_store;
  EXPECT_EQ(store.lrd_name + " " + std::to_string(store.record_length) + " " + std::to_string(store.mapping_function),
            "bc.LRD 2 2");
  EXPECT_THAT(ReadText("MAP.log"), HasSubstr("DLL CheckErrrorMAP run successfully!"));
}

TEST_F(CheckMap, OneMarkerGivesAnEmptyFileAndTwoMarkersOneRecord) {
  for (const auto& [markers, bytes] : {std::pair{1, 0u}, std::pair{2, 8u}}) {
    const std::vector<std::pair<std::string, std::string>> rows = {{"M1", "A H B"}, {"M2", "A H B"}};
    WriteText("m.map", MapFile(7, {rows.begin(), rows.begin() + markers}, 3));
    ASSERT_EQ(testing::CheckMapFile("m.map"), 0);
    EXPECT_TRUE(testing::FileExists("m.LRD"));
    EXPECT_EQ(ReadText("m.LRD").size(), bytes) << markers;
  }
}

TEST_F(CheckMap, FrequenciesAboveTheSinglePrecisionNinetyPercentAreWarnedAbout) {
  std::string m1, high, edge;
  for (int k = 0; k < 20; ++k) {
    const char g = k < 10 ? 'A' : 'H', other = k < 10 ? 'H' : 'A';
    m1 += std::string(" ") + g;
    high += std::string(" ") + (k == 0 ? g : other);      // 19 of 20 recombinant
    edge += std::string(" ") + (k < 2 ? g : other);       // 18 of 20: exactly the 32-bit 0.9
  }
  WriteText("w.map", MapFile(1, {{"M1", m1}, {"M2", high}, {"M3", edge}}, 20));
  ASSERT_EQ(testing::CheckMapFile("w.map"), 0);
  const std::string log = ReadText("MAP.log");
  EXPECT_THAT(log, HasSubstr("Warning: estimated recombination frequency too high! IMarker=2        "
                             "JMarker=1        RecFreq=0.9500   LOD score="));
  EXPECT_THAT(log, ::testing::Not(HasSubstr("IMarker=3        JMarker=1 ")));
  const std::vector<float> rec = Records("w.LRD");
  EXPECT_EQ(rec[2 * (GroupPairIndex(3, 1) - 1) + 1], 0.9f);
}

TEST_F(CheckMap, PairsWithoutAnEstimateAreStoredAsUnlinkedAndCountedOnce) {
  // F2: M2 is H in every individual, M1 has as many H as A and B together (54 + 45 = 99), M3
  // is M1 again. (2,1) and (3,2) have no estimate; once they were stored with r = NaN and a
  // LOD of about 149, which chained unrelated chromosomes into one group.
  std::string m1, m2;
  for (int k = 0; k < 198; ++k) {
    m1 += k < 54 ? " A" : k < 153 ? " H" : " B";
    m2 += " H";
  }
  WriteText("d.map", MapFile(7, {{"M1", m1}, {"M2", m2}, {"M3", m1}}, 198));
  ASSERT_EQ(testing::CheckMapFile("d.map"), 0);
  const std::vector<float> rec = Records("d.LRD");
  for (const auto& [i, j] : {std::pair{2, 1}, std::pair{3, 2}}) {
    EXPECT_EQ(rec[2 * (GroupPairIndex(i, j) - 1)], 0.0f) << i << j;
    EXPECT_EQ(rec[2 * (GroupPairIndex(i, j) - 1) + 1], 0.5f) << i << j;
  }
  EXPECT_EQ(rec[2 * (GroupPairIndex(3, 1) - 1) + 1], 0.0f);
  EXPECT_LT(rec[2 * (GroupPairIndex(3, 1) - 1)], -50.0f);
  const std::string log = ReadText("MAP.log");
  const std::string line =
      "Warning: no estimate for 2 marker pairs! They are stored as unlinked: RecFreq=0.5 LOD score=0";
  EXPECT_THAT(log, HasSubstr(line));
  EXPECT_EQ(log.find(line), log.rfind(line));
}

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
