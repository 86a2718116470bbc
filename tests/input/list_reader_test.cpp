#include "input/list_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/temp_dir.h"

namespace gae {
namespace {

class ListReading : public testing::InTempDir {
 protected:
  InputFile& Load(const std::string& text) {
    testing::WriteText("in.txt", text);
    EXPECT_TRUE(file_.Open("in.txt"));
    return file_;
  }
  int32_t ReadInt() {
    file_.SkipRemarks();
    ListRead read(file_);
    int32_t v = -12345;
    return read.Int(v) ? v : -12345;
  }
  InputFile file_;
};

TEST_F(ListReading, RemarksBlankLinesAndTrailingCommentsArePassedOver) {
  Load("! title\n\n   \n\t\r\n!another\r\n7 ! F2\r\n!x\n  3,\t4\n");
  EXPECT_EQ(ReadInt(), 7);
  EXPECT_EQ(ReadInt(), 3);   // the 4 after it is the rest of the line: dropped
  EXPECT_EQ(ReadInt(), -12345);  // end of file
}

TEST_F(ListReading, ARemarkMarkAfterABlankIsData) {
  Load(" ! not a remark\n5\n");
  EXPECT_EQ(ReadInt(), -12345);
}

TEST_F(ListReading, OnlyTheFirst128CharactersDecideWhetherALineIsBlank) {
  Load(std::string(130, ' ') + "5\n6\n");
  EXPECT_EQ(ReadInt(), 6);
}

TEST_F(ListReading, AReadSpansLinesAndDropsTheRestOfItsLastLine) {
  InputFile& in = Load("M1 A B\n  H\n X rest of line\nnext\n");
  in.SkipRemarks();
  {
    ListRead read(in);
    std::string name, token;
    ASSERT_TRUE(read.Text(name, 35));
    EXPECT_EQ(name, "M1" + std::string(33, ' '));
    for (const char* expected : {"A ", "B ", "H ", "X "}) {
      ASSERT_TRUE(read.Text(token, 2));
      EXPECT_EQ(token, expected);
    }
  }
  ListRead read(in);
  std::string word;
  ASSERT_TRUE(read.Text(word, 2));
  EXPECT_EQ(word, "ne");  // a longer item is cut to its field
}

TEST_F(ListReading, IntegersFollowTheListDirectedRules) {
  int32_t v = 0;
  EXPECT_TRUE(ParseInt("+42", v));
  EXPECT_EQ(v, 42);
  EXPECT_TRUE(ParseInt("-2147483648", v));
  EXPECT_EQ(v, -2147483647 - 1);
  EXPECT_FALSE(ParseInt("2147483648", v));
  EXPECT_FALSE(ParseInt("7.0", v));
  EXPECT_FALSE(ParseInt("F2", v));
  EXPECT_FALSE(ParseInt("-", v));
  EXPECT_FALSE(ParseInt("", v));
}

TEST_F(ListReading, RealsAcceptDoublePrecisionExponentsAndSpecialValues) {
  float v = 0;
  EXPECT_TRUE(ParseReal("1.5d2", v));
  EXPECT_EQ(v, 150.0f);
  EXPECT_TRUE(ParseReal("-9999", v));
  EXPECT_EQ(v, -9999.0f);
  EXPECT_TRUE(ParseReal(".5", v));
  EXPECT_EQ(v, 0.5f);
  EXPECT_TRUE(ParseReal("5.", v));
  EXPECT_EQ(v, 5.0f);
  EXPECT_TRUE(ParseReal("2E-1", v));
  EXPECT_EQ(v, 0.2f);
  EXPECT_TRUE(ParseReal("NaN", v));
  EXPECT_TRUE(std::isnan(v));
  EXPECT_TRUE(ParseReal("-Infinity", v));
  EXPECT_TRUE(std::isinf(v) && v < 0);
  for (const char* bad : {"NA", "N/A", "na", "*", ".", "-", "1.5x", "0x10", "e5", "1e", "1.2.3"}) {
    EXPECT_FALSE(ParseReal(bad, v)) << bad;
  }
}

TEST_F(ListReading, MissingOrUnreadableFilesDoNotOpen) {
  InputFile in;
  EXPECT_FALSE(in.Open("no-such-file"));
  EXPECT_FALSE(in.Open(""));
  EXPECT_FALSE(in.Open("."));  // a folder
}

}  // namespace
}  // namespace gae
