// gaengine snp and gaengine bin, run as a user runs them, their files read back by our readers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>


#include <string>

#include "frame/process_state.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;

using testing::Gaengine;

// Markers of a written map-tool input file, read back by the map tools' reader (-1: refused).
int MarkersReadBack(const std::string& path, int tool_code) {
  InputFile in;
  if (!in.Open(path)) return -1;
  MapToolInput data;
  ::testing::internal::CaptureStdout();
  ReadMapToolInput(in, tool_code, data);
  ::testing::internal::GetCapturedStdout();
  return MessageCode() == 0 ? data.num_markers : -1;
}

class MarkerToolsCommand : public testing::InTempDir {};

TEST_F(MarkerToolsCommand, SnpFilesBecomeInputFilesOfTheirMapTools) {
  testing::CommandRun r = Gaengine("snp " + testing::SourcePath("examples/f2_parents_progeny.snp") + " -o f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("8 markers read, 8 kept, 0 deleted"));
  EXPECT_THAT(testing::ReadText("f2.map"), HasSubstr("!*****Anchor information"));
  r = Gaengine("--seed 5 map f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("Linkage groups    1"));

  r = Gaengine("snp " + testing::SourcePath("examples/double_cross_parents_progeny.snp") +
               " --tool-code 20 -o dc.cdm");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("non-polymorphism! MarkerID=6"));
  EXPECT_EQ(MarkersReadBack("dc.cdm", 20), 7);
  r = Gaengine("snp " + testing::SourcePath("examples/eight_way_ril_parents_progeny.snp") +
               " --tool-code 30 -o ew.plm");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_EQ(MarkersReadBack("ew.plm", 30), 8);
  EXPECT_THAT(testing::ReadText("ew.plm"), HasSubstr("ABABAABB EW01"));

  testing::WriteText("bad.snp", "7\n1\n1\n1\n2\n5\nM1 AA TT\nM1 AA AT\nM1 0\n");
  r = Gaengine("snp bad.snp");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_THAT(r.out, HasSubstr("bad.snp: Method to deal with missing markers out of range [1,2]! Input value=5"));
}

TEST_F(MarkerToolsCommand, BinWritesTheReducedFileAndTheTableOfBins) {
  testing::CommandRun r = Gaengine("bin " + testing::SourcePath("examples/f2_redundant.bin") + " -o kept.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("10 markers, 5 bins"));
  EXPECT_EQ(MarkersReadBack("kept.map", 104), 5);
  const std::string table = testing::ReadText("kept.bins");
  EXPECT_THAT(table, HasSubstr("       1 BN01                                BN01 BN02\n"));
  EXPECT_THAT(table, HasSubstr("       5 BN09                                BN09 BN10\n"));
  r = Gaengine("bin " + testing::SourcePath("examples/f2_redundant.bin") + " --missing-rate 0.5");
  EXPECT_NE(r.exit_code, 0);
}

}  // namespace
}  // namespace gae
