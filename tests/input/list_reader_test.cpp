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
  Load(" ! not a remark\n5\n");  // a remark mark after a blank is data
  EXPECT_EQ(ReadInt(), -12345);
  Load(std::string(130, ' ') + "5\n6\n");  // only the first 128 characters make a line blank
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

TEST_F(ListReading, NumbersFollowTheListDirectedRules) {
  int32_t i = 0;
  EXPECT_TRUE(ParseInt("+42", i) && i == 42);
  EXPECT_TRUE(ParseInt("-2147483648", i) && i == -2147483647 - 1);
  for (const char* bad : {"2147483648", "7.0", "F2", "-", ""}) EXPECT_FALSE(ParseInt(bad, i)) << bad;
  // Reals take double-precision exponents and the special values.
  const std::pair<const char*, float> reals[] = {{"1.5d2", 150.0f}, {"-9999", -9999.0f}, {".5", 0.5f},
                                                 {"5.", 5.0f}, {"2E-1", 0.2f}};
  float v = 0;
  for (const auto& [text, value] : reals) EXPECT_TRUE(ParseReal(text, v) && v == value) << text;
  EXPECT_TRUE(ParseReal("NaN", v) && std::isnan(v));
  EXPECT_TRUE(ParseReal("-Infinity", v) && std::isinf(v) && v < 0);
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
