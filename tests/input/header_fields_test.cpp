#include "input/header_fields.h"

#include <gtest/gtest.h>

#include "frame/process_state.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

struct FieldCase {
  HeaderField field;
  int tool_code;
  const char* text;
  int expected_code;  // 0: accepted
};

class HeaderFields : public testing::InTempDir {};

TEST_F(HeaderFields, EachFieldHasItsReadCodeAndItsRangeCode) {
  // Every read code and range code comes back through a whole file, with its words, in
  // validators_bad_input_test; here the ranges that differ from tool to tool, and their edges.
  using F = HeaderField;
  const FieldCase cases[] = {
      {F::kIndicator, 107, "1", 0},          {F::kPopulationType, 10, "20", 0},
      {F::kPopulationType, 104, "0", 2004},  {F::kPopulationType, 110, "12", 0},
      {F::kPopulationType, 110, "17", 0},    {F::kPopulationType, 30, "4", 0},
      {F::kPopulationType, 109, "99", 0},    {F::kSpaceType, 10, "2", 0},
      {F::kNumTraits, 107, "0", 0},
  };
  for (const FieldCase& c : cases) {
    testing::WriteText("h.txt", std::string("! header\n") + c.text + "   ! remark\n");
    InputFile in;
    ASSERT_TRUE(in.Open("h.txt"));
    MessageCode() = 0;
    int32_t value = -1;
    ::testing::internal::CaptureStdout();
    const bool ok = ReadHeaderField(in, c.field, c.tool_code, value);
    ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(ok, c.expected_code == 0) << c.text;
    EXPECT_EQ(MessageCode(), c.expected_code) << c.text;
  }
}

TEST(PairStoreSizeTest, CellCountWrapsIn32BitsAsTheFormatAlwaysDid) {
  EXPECT_EQ(PairCellCount(1), 0);
  EXPECT_EQ(PairCellCount(2), 1);
  EXPECT_EQ(PairCellCount(10000), 49995000);
  EXPECT_EQ(PairCellCount(46341), 1073720970);
  // 46342 * 46341 = 2147534622 wraps to -2147432674, halved to -1073716337: an empty array.
  EXPECT_EQ(PairCellCount(46342), -1073716337);
  EXPECT_TRUE(PairCellsFit(PairCellCount(46342)));
}

TEST(PairStoreSizeTest, ARefusedAllocationFailsTheTest) {
  auto refuse = [](std::size_t) -> void* { return nullptr; };
  EXPECT_FALSE(PairCellsFit(10, refuse));
  EXPECT_TRUE(PairCellsFit(0, refuse));
  EXPECT_TRUE(PairCellsFit(10));
}

}  // namespace
}  // namespace gae
