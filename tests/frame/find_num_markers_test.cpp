#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "frame/process_state.h"
#include "frame/run_log.h"
#include "gaengine.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::ReadLines;
using testing::WriteText;

class FindNumMarkers : public testing::InTempDir {
 protected:
  using Export = void (*)(int, const char*, int*, int*);
  int Call(Export fn, const std::string& path, int& count) {
    int status = -1;
    ::testing::internal::CaptureStdout();
    fn(static_cast<int>(path.size()), path.data(), &count, &status);
    stdout_ = ::testing::internal::GetCapturedStdout();
    return status;
  }
  std::string stdout_;
};

TEST_F(FindNumMarkers, ReadsTheFourthHeaderValueOfARealFile) {
  // Windows line ends, tabs, a remark between values and a comment behind a value.
  WriteText("f2.map", "!F2 data\r\n\r\n7\t! F2\r\n1\r\n! space type next\r\n1\r\n  150 \t,\r\n200\r\n");
  int count = 0;
  EXPECT_EQ(Call(MAPFindNumMarkers, "f2.map", count), 0);
  EXPECT_EQ(count, 150);
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre("DLL MAPFindNumMarkers run successfully!"));
  EXPECT_EQ(stdout_, "DLL MAPFindNumMarkers run successfully!\n");
  EXPECT_FALSE(Process().log.IsConnected());
}

// A failure's cause and entry lines: map_tool_frame_test.
TEST_F(FindNumMarkers, RemarksAloneAreNoHeaderAndTheEntryLineLeavesItsCode) {
  WriteText("remarks.map", "! nothing\n!but remarks\n");
  int count = 0;
  EXPECT_EQ(Call(MAPFindNumMarkers, "remarks.map", count), 2003);
  EXPECT_EQ(MessageCode(), 1101);
}

TEST_F(FindNumMarkers, TheCountVariableIsTheReadsScratch) {
  // The read fails at the third field: what stays is the second value read.
  WriteText("scratch.map", "7\n2\n9\n10\n");
  int count = 0;
  EXPECT_EQ(Call(MAPFindNumMarkers, "scratch.map", count), 2011);
  EXPECT_EQ(count, 2);
}

TEST_F(FindNumMarkers, EachToolChecksItsOwnPopulationTypes) {
  WriteText("three.txt", "3\n1\n1\n6\n40\n");
  int count = 0;
  EXPECT_EQ(Call(CDMFindNumMarkers, "three.txt", count), 2006);
  EXPECT_EQ(Call(PLMFindNumMarkers, "three.txt", count), 0);
  EXPECT_EQ(count, 6);
  EXPECT_THAT(ReadLines("CDM.log"),
              ElementsAre("--Error2006: PopulationType=3 out of range [1:2]!",
                          "--Error1101: error found in DLL! DLL name=DLL CDMFindNumMarkers"));
  WriteText("seven.txt", "7\n1\n1\n6\n40\n");
  int status = -1;
  ::testing::internal::CaptureStdout();
  SNPFindNumMarkers(110, 9, "seven.txt", &count, &status);
  BINFindNumMarkers(2, 9, "seven.txt", &count, &status);
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(status, 0);
  EXPECT_THAT(ReadLines("SNP.log"), ::testing::Contains("--Error2005: PopulationType=7 out of range "
                                                        "[1:4,5:6,9:12,17:20]!"));
  EXPECT_THAT(ReadLines("BIN.log"), ElementsAre("DLL BINFindNumMarkers run successfully!"));
}

// A missing file in general: map_tool_frame_test.
TEST_F(FindNumMarkers, AnEmptyPathIsAMissingFile) {
  int count = 0;
  EXPECT_EQ(Call(MAPFindNumMarkers, "", count), 1002);
  EXPECT_THAT(ReadLines("MAP.log"),
              ElementsAre(" does not exist, and the program stops!",
                          "--Error1101: error found in DLL! DLL name=DLL MAPFindNumMarkers"));
}

TEST_F(FindNumMarkers, TrailingBlanksOfThePathAreTrimmedAndTheLogGrows) {
  WriteText("a.map", "7\n1\n1\n3\n5\n");
  int count = 0;
  EXPECT_EQ(Call(MAPFindNumMarkers, "a.map   ", count), 0);
  EXPECT_EQ(Call(MAPFindNumMarkers, "a.map", count), 0);
  EXPECT_EQ(ReadLines("MAP.log").size(), 2u);
}

TEST_F(FindNumMarkers, AbsurdCountsNeverCrash) {
  WriteText("huge.map", "7\n1\n1\n2000000000\n5\n");
  int count = 0;
  const int status = Call(MAPFindNumMarkers, "huge.map", count);
  EXPECT_TRUE(status == 0 || status == 2028) << status;
  WriteText("overflow.map", "7\n1\n1\n99999999999\n5\n");
  EXPECT_EQ(Call(MAPFindNumMarkers, "overflow.map", count), 2016);
}

}  // namespace
}  // namespace gae
