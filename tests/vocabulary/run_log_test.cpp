#include "vocabulary/run_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/process_state.h"
#include "frame/tool_profile.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::ReadLines;

class RunLogSessions : public testing::InTempDir {};

TEST_F(RunLogSessions, NestedEntriesShareOneLogAndTheOuterOneClosesIt) {
  RunLog& log = Process().log;
  {
    LogSession outer("MAP");
    EXPECT_TRUE(outer.OpenedHere());
    {
      LogSession inner("MAP");
      EXPECT_FALSE(inner.OpenedHere());
      log.Write("inner");
    }
    EXPECT_TRUE(log.IsConnectedTo("MAP.log"));
    log.Write("outer");
  }
  EXPECT_FALSE(log.IsConnected());
  { LogSession again("MAP"); log.Write("second run"); }
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre("inner", "outer", "second run"));
}

TEST_F(RunLogSessions, AnotherToolsLogStacksAndTheOuterLogResumes) {
  RunLog& log = Process().log;
  LogSession outer("MAP");
  {
    LogSession inner("CDM");
    EXPECT_TRUE(inner.OpenedHere());
    log.Write("to cdm");
  }
  log.Write("to map");
  EXPECT_THAT(ReadLines("CDM.log"), ElementsAre("to cdm"));
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre("to map"));
}

TEST_F(RunLogSessions, WithoutALogALineStillReachesStandardOutput) {
  LogSession none(StageLogTool(7));
  ::testing::internal::CaptureStdout();
  EmitLine("hello");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "hello\n");
  EXPECT_FALSE(testing::FileExists(".log"));
}

}  // namespace
}  // namespace gae
