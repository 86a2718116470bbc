#include "input/map_tool_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "vocabulary/fixed_format.h"
#include "frame/process_state.h"
#include "support/alloc_counter.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;

class MapToolReader : public testing::InTempDir {
 protected:
  // Reads `path`; the code left in MessageCode.
  int Read(const std::string& path, int tool_code) {
    InputFile in;
    EXPECT_TRUE(in.Open(path));
    ::testing::internal::CaptureStdout();
    ReadMapToolInput(in, tool_code, input_);
    out_ = ::testing::internal::GetCapturedStdout();
    return MessageCode();
  }
  int ReadText(const std::string& text, int tool_code) {
    testing::WriteText("in.txt", text);
    return Read("in.txt", tool_code);
  }
  std::string Letters(int marker) const {
    const int n = input_.markers.population_size;
    return std::string(input_.markers.types.begin() + (marker - 1) * n,
                       input_.markers.types.begin() + marker * n);
  }
  MapToolInput input_;
  std::string out_;
};

TEST_F(MapToolReader, FilesAsUsersWriteThem) {
  // Windows line ends, tabs, a comment behind each value, rows wrapped over several lines and
  // names with the punctuation of real marker names.
  const std::string text =
      "! an F2\r\n7\t! F2\r\n1\r\n1\r\n3\r\n5\r\n\r\n"
      "Xgwm(1)-3A\tA H\r\n  B\tA H\r\n"
      "Satt.112|b  2 1 0 -1 1\r\n"
      "M*07_x\tD D\tB\r\n D X\r\n"
      "! anchors\r\n"
      "Xgwm(1)-3A 1\r\nSatt.112|b 0\r\nM*07_x 2\r\n";
  ASSERT_EQ(ReadText(text, 104), 0) << out_;
  EXPECT_EQ(Letters(1), "AHBAH");
  EXPECT_EQ(Letters(2), "AHBXH");
  EXPECT_EQ(Letters(3), "DDBDX");
  EXPECT_THAT(input_.markers.categories, ElementsAre(1, 1, 12));
  EXPECT_THAT(input_.anchors, ElementsAre(1, 0, 2));
}

TEST_F(MapToolReader, AnchorRowsFollowTheMarkersOneByOne) {
  const std::string head = "4\n1\n1\n2\n3\nm1 A B A\nm2 B A A\n";
  EXPECT_EQ(ReadText(head, 104), 2301);
  EXPECT_EQ(out_, "--Error2301: cannot read Anchor information! MarkerID=1 Anchor info=\n");
  EXPECT_EQ(ReadText(head + "m1 0\nm2 none\n", 104), 2301);
  EXPECT_EQ(out_, "--Error2301: cannot read Anchor information! MarkerID=2 Anchor info=m2\n");
  EXPECT_EQ(ReadText(head + "m1 0\nM2 1\n", 104), 2302);
  EXPECT_EQ(out_,
            "--Error2302: Inconsistent MarkerName! MarkerID=2 Name in Chromosome or MarkerType=m2 "
            "Name in Anchor info=M2\n");
  EXPECT_EQ(ReadText(head + "m1 0\nm2 -1\n", 104), 2303);
  EXPECT_EQ(out_, "--Error2303: Invalid Anchor value! MarkerID=2 Anchor=-1\n");
  EXPECT_EQ(ReadText(head + "m1 0\nm2 99\n", 104), 0);
}

TEST_F(MapToolReader, AClaimOfTwoBillionMarkersOrLinesFailsWhenTheRowsRunOut) {
  // 2147483647 markers pass the size test of the pair store (its cell count wraps below one),
  // so only the missing rows stop the read.
  const std::string rows = "m1 A B A\nm2 B A A\n";
  testing::AllocationScope scope;
  EXPECT_EQ(ReadText("4\n1\n1\n2147483647\n3\n" + rows, 104), 2201);
  EXPECT_EQ(out_, "--Error2201: cannot read MarkerType! MarkerID=3\n");
  EXPECT_EQ(ReadText("4\n1\n1\n2\n2147483647\n" + rows, 104), 2201);
  EXPECT_EQ(out_, "--Error2201: cannot read MarkerType! MarkerID=1\n");
  EXPECT_EQ(ReadText("1\n1\n1\n2147483647\n2147483647\nABCD m1 AC BD\n", 20), 2201);
  EXPECT_LT(scope.PeakBytes(), 1 << 20);
}

}  // namespace
}  // namespace gae
