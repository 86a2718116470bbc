#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "frame/process_state.h"
#include "vocabulary/run_log.h"
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

}  // namespace
}  // namespace gae
