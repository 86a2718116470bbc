#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "vocabulary/pair_index.h"
#include "frame/process_state.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using testing::ReadText;
using testing::WriteText;

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
  EXPECT_EQ(out.anchor[4], 1);
  EXPECT_EQ(out.a[3], 3);
  EXPECT_EQ(out.h[3], 2);
  EXPECT_EQ(out.x[3], 5);
  EXPECT_EQ(out.category[0], 1);
  EXPECT_EQ(Process().pair_store.lrd_name, "bc.LRD");
  EXPECT_EQ(Process().pair_store.record_length, 2);
  EXPECT_EQ(Process().pair_store.mapping_function, 2);
  EXPECT_THAT(ReadText("MAP.log"), HasSubstr("DLL CheckErrrorMAP run successfully!"));
}

TEST_F(CheckMap, OneMarkerGivesAnEmptyFileAndTwoMarkersOneRecord) {
  WriteText("one.map", MapFile(7, {{"M1", "A H B"}}, 3));
  ASSERT_EQ(testing::CheckMapFile("one.map"), 0);
  EXPECT_TRUE(testing::FileExists("one.LRD"));
  EXPECT_EQ(ReadText("one.LRD").size(), 0u);
  WriteText("two.map", MapFile(7, {{"M1", "A H B"}, {"M2", "A H B"}}, 3));
  ASSERT_EQ(testing::CheckMapFile("two.map"), 0);
  EXPECT_EQ(ReadText("two.LRD").size(), 8u);
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

}  // namespace
}  // namespace gae
