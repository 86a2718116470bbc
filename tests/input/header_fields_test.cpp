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
  using F = HeaderField;
  const FieldCase cases[] = {
      {F::kIndicator, 107, "1", 0},          {F::kIndicator, 107, "3", 2002},
      {F::kIndicator, 107, "one", 2001},     {F::kPopulationType, 10, "20", 0},
      {F::kPopulationType, 10, "21", 2004},  {F::kPopulationType, 104, "0", 2004},
      {F::kPopulationType, 10, "", 2003},    {F::kPopulationType, 110, "7", 2005},
      {F::kPopulationType, 110, "12", 0},    {F::kPopulationType, 110, "17", 0},
      {F::kPopulationType, 20, "3", 2006},   {F::kPopulationType, 30, "4", 0},
      {F::kPopulationType, 30, "5", 2007},   {F::kPopulationType, 109, "99", 0},
      {F::kMappingFunction, 10, "4", 2009},  {F::kMappingFunction, 10, "x", 2008},
      {F::kSpaceType, 10, "2", 0},           {F::kSpaceType, 10, "0", 2011},
      {F::kSpaceType, 10, "!", 2010},        {F::kSpaceUnit, 107, "3", 2013},
      {F::kSpaceUnit, 107, "1.0", 2012},     {F::kNumChs, 107, "0", 2015},
      {F::kNumChs, 107, "-", 2014},          {F::kNumMarkers, 10, "0", 2017},
      {F::kNumMarkers, 10, "many", 2016},    {F::kPopulationSize, 10, "0", 2019},
      {F::kPopulationSize, 10, "?", 2018},   {F::kNumTraits, 107, "0", 0},
      {F::kNumTraits, 107, "-1", 2021},      {F::kNumTraits, 107, "", 2020},
      {F::kNumEnvs, 108, "0", 2023},         {F::kNumEnvs, 108, "e", 2022},
      {F::kNumReps, 109, "0", 2025},         {F::kNumReps, 109, "r", 2024},
      {F::kNumFamilies, 110, "0", 2027},     {F::kNumFamilies, 110, "f", 2026},
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
