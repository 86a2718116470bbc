#include "vocabulary/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vocabulary/message_catalogue.h"
#include "frame/process_state.h"
#include "vocabulary/run_log.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::InTempDir;
using testing::ReadLines;

class Messages : public InTempDir {};

TEST_F(Messages, TimeLineIsWrittenInTwoPiecesOfOneRecord) {
  EXPECT_EQ(CpuTimeLine(1.0f, 4.0f),
            "   CPU time taken: 0.050         minutes or 3.000         seconds");
  LogSession log("MAP");
  MessageCode() = 1103;
  ::testing::internal::CaptureStdout();
  PrintFrameMessage("DLL MAPGrouping", 1.0f, 4.0f, 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), CpuTimeLine(1.0f, 4.0f) + "\n");
  EXPECT_THAT(ReadLines("MAP.log"), ElementsAre(CpuTimeLine(1.0f, 4.0f)));
}

TEST(Catalogue, CodesAreUniqueAndSortedForTheLookup) {
  int previous = 0;
  for (const CatalogueEntry& entry : Catalogue()) {
    EXPECT_GT(entry.code, previous);
    previous = entry.code;
  }
}

}  // namespace
}  // namespace gae
