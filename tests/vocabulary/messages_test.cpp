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

TEST_F(Messages, ValuesAreLeftAdjustedIntegersOrTrimmedTexts) {
  EXPECT_THAT(MessageLines(2028, {123456789}),
              ElementsAre("--Error2028: too many markers! NumMarkers=********"));
  EXPECT_THAT(MessageLines(2202, {3, 17, "Q "}),
              ElementsAre("--Error2202: Invalid MarkerType! MarkerID=3 LineID=17 Input MarkerType=Q"));
  EXPECT_THAT(MessageLines(9999, {}), ElementsAre());
}

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

TEST_F(Messages, OutlierWarningsGoToTheLogOnlyAndOtherFamiliesPrintNothing) {
  LogSession log("BIP");
  ::testing::internal::CaptureStdout();
  MessageCode() = 2004;  // a header code: the printers of the other families stay silent
  PrintFrameMessage("x", 0, 0, 1);
  PrintChromosomeMessage(1, 1, 1, 1, 1, "x");
  PrintMarkerMessage(1, 1, "x");
  MessageCode() = 1101;
  PrintHeaderMessage(1);
  PrintPairwiseMessage(1, 2, 0.5f, 1.0f, 0.0f);
  MessageCode() = 2701;
  PrintOutlierMessage(0, 0, 0, 0);
  MessageCode() = 2702;
  PrintOutlierMessage(1, 7, 99.5f, 3.25f);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
  EXPECT_THAT(ReadLines("BIP.log"),
              ElementsAre("Warning: possible outlier in phenotype!",
                          "     TraitID    SampleID  PhenoValue OutlierStat     Comment",
                          "           1           7     99.5000      3.2500     TooHigh"));
}

TEST_F(Messages, PairwiseWarningUsesEightColumnFields) {
  MessageCode() = 2802;
  ::testing::internal::CaptureStdout();
  PrintPairwiseMessage(12, 3, 0.91234f, 4.5f, 0);
  MessageCode() = 2803;
  PrintPairwiseMessage(0, 0, 0, 0, 1.5f);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "Warning: estimated recombination frequency too high! IMarker=12       "
            "JMarker=3        RecFreq=0.9123   LOD score=4.50    \n"
            "Calculating recombination frequency was complted! Time (m) taken=1.50\n");
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
