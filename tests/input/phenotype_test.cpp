#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "vocabulary/run_log.h"
#include "input/outliers.h"
#include "input/phenotype_row.h"
#include "input/phenotype_section.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;

class PhenotypeRows : public testing::InTempDir {
 protected:
  // Parses a row; the values, or an empty list when the row was refused.
  std::vector<float> Parse(std::vector<std::string_view> tokens, bool& flag) {
    std::vector<float> values(tokens.size(), 0.0f);
    ::testing::internal::CaptureStdout();
    const bool ok = ParsePhenotypeRow(tokens, values, flag);
    out_ = ::testing::internal::GetCapturedStdout();
    return ok ? values : std::vector<float>{};
  }
  std::string out_;
};

TEST_F(PhenotypeRows, MissingWordsAndTheOldMinusHundredAreExclusive) {
  bool flag = false;
  EXPECT_THAT(Parse({"-100", "3", "-100.00001"}, flag), ElementsAre(-9999.0f, 3.0f, -9999.0f));
  EXPECT_FALSE(flag);
  EXPECT_THAT(Parse({"1.5", "NA", "2.0"}, flag), ElementsAre(1.5f, -9999.0f, 2.0f));
  EXPECT_TRUE(flag);
  // From now on -100 is a number, and every word is missing.
  EXPECT_THAT(Parse({"-100", "3", "na", "*", ".", "-", "-9999"}, flag),
              ElementsAre(-100.0f, 3.0f, -9999.0f, -9999.0f, -9999.0f, -9999.0f, -9999.0f));
  EXPECT_TRUE(flag);
}

TEST_F(PhenotypeRows, TheScanForWordsRunsBeforeAnyValueIsRead) {
  // A bad token before a word still switches the process to words (the bad token's line is the
  // validators' corpus).
  bool flag = false;
  EXPECT_TRUE(Parse({"abc", "NA"}, flag).empty());
  EXPECT_TRUE(flag);
  EXPECT_THAT(Parse({"1.5D0", "2e1", "+.5"}, flag), ElementsAre(1.5f, 20.0f, 0.5f));
  EXPECT_EQ(MessageCode(), 0);
}

TEST(FiveNumbersTest, LinearInterpolationBetweenOrderStatistics) {
  const float five[] = {5, 1, 4, 2, 3};
  const FiveNumbers a = FiveNumberSummary(five);
  EXPECT_FLOAT_EQ(a.q1, 2.0f);
  EXPECT_FLOAT_EQ(a.median, 3.0f);
  EXPECT_FLOAT_EQ(a.q3, 4.0f);
  // Four values: ranks 0.75, 1.5 and 2.25 between the order statistics 1, 2, 3, 4.
  const float four[] = {4, 3, 2, 1};
  const FiveNumbers b = FiveNumberSummary(four);
  EXPECT_FLOAT_EQ(b.minimum, 1.0f);
  EXPECT_FLOAT_EQ(b.q1, 1.75f);
  EXPECT_FLOAT_EQ(b.median, 2.5f);
  EXPECT_FLOAT_EQ(b.q3, 3.25f);
  EXPECT_FLOAT_EQ(b.maximum, 4.0f);
}

TEST(OutliersTest, FencesLieThreeInterquartileRangesOut) {
  // Sorted present values 10 11 12 13 14 100: Q1 = 11.25, Q3 = 13.75, IQR 2.5, fences 3.75
  // and 21.25. Missing values take no part.
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float row[] = {12, -9999.0f, 100, 10, nan, 14, 11, 13};
  const std::vector<Outlier> found = FindOutliers(row);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].line, 3);
  EXPECT_TRUE(found[0].high);
  EXPECT_FLOAT_EQ(found[0].statistic, (100.0f - 13.75f) / 2.5f);

  const float low_row[] = {-20, 10, 11, 12, 13};  // Q1 = 10, Q3 = 12, low fence 4
  const std::vector<Outlier> low = FindOutliers(low_row);
  ASSERT_EQ(low.size(), 1u);
  EXPECT_FALSE(low[0].high);
  EXPECT_FLOAT_EQ(low[0].statistic, (-20.0f - 10.0f) / (10.0f - 12.0f));

  // Q1 = Q3: the fences coincide and any other value is infinitely far out.
  const float flat[] = {5, 5, 5, 5, 6, 4};
  const std::vector<Outlier> f = FindOutliers(flat);
  ASSERT_EQ(f.size(), 2u);
  EXPECT_TRUE(std::isinf(f[0].statistic));
  EXPECT_TRUE(FindOutliers(std::vector<float>{-9999.0f, nan}).empty());
}

class PhenotypeSectionTest : public testing::InTempDir {};

TEST_F(PhenotypeSectionTest, SpreadsheetRowsAndARepeatedOutlierReport) {
  // Tab-separated rows with Windows line ends; the second wraps over two lines.
  testing::WriteText("p.txt",
                     "! traits\r\nWidth\t1\t2\t3\t4\t5\t100\r\nLength\t7\t7\t7\r\n\t7\t7\t7\r\n");
  InputFile in;
  ASSERT_TRUE(in.Open("p.txt"));
  PhenotypeTable table;
  bool flag = false;
  {
    LogSession log("BIP");
    ASSERT_TRUE(ReadPhenotypeSection(in, 2, 6, table, flag));
  }
  EXPECT_THAT(table.values, ElementsAre(1, 2, 3, 4, 5, 100, 7, 7, 7, 7, 7, 7));
  EXPECT_EQ(table.names[1], "Length             ");
  // Q1 = 2.25, Q3 = 4.75 for the first row: 100 is (100 - 4.75) / 2.5 = 38.1 ranges out. The
  // report runs after each row, so the finding of the first row stands twice.
  const std::string heading[] = {"Warning: possible outlier in phenotype!",
                                 "     TraitID    SampleID  PhenoValue OutlierStat     Comment"};
  const std::string finding = "           1           6    100.0000     38.1000     TooHigh";
  EXPECT_THAT(testing::ReadLines("BIP.log"),
              ElementsAre(heading[0], heading[1], finding, heading[0], heading[1], finding));
  EXPECT_EQ(MessageCode(), 0);
}

}  // namespace
}  // namespace gae
