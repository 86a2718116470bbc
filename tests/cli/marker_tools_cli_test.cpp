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
  // Each bundled file, without a design given, becomes the input file of the design its parents
  // make, named after it, and that tool's reader takes it.
  const struct {
    const char* example;
    const char* written;
    int tool_code, markers;
    const char* told;
  } designs[] = {
      {"f2_parents_progeny.snp", "f2_parents_progeny.map", 104, 8, "2 parents per marker: two inbred parents (MAP)"},
      {"double_cross_parents_progeny.snp", "double_cross_parents_progeny.cdm", 20, 7,
       "4 parents per marker: a clonal F1 or double cross (CDM), the progeny being mostly heterozygous"},
      {"eight_way_ril_parents_progeny.snp", "eight_way_ril_parents_progeny.plm", 30, 8,
       "8 parents per marker: four- or eight-way pure lines (PLM)"},
  };
  for (const auto& d : designs) {
    testing::WriteText(d.example, testing::ReadText(testing::SourcePath(std::string("examples/") + d.example)));
    const testing::CommandRun r = Gaengine(std::string("snp ") + d.example);
    ASSERT_EQ(r.exit_code, 0) << r.out;
    EXPECT_THAT(r.out, HasSubstr(d.told));
    EXPECT_EQ(MarkersReadBack(d.written, d.tool_code), d.markers) << d.written;
  }
  EXPECT_THAT(testing::ReadText("eight_way_ril_parents_progeny.plm"), HasSubstr("ABABAABB EW01"));
  testing::CommandRun r = Gaengine("--seed 5 map f2_parents_progeny.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("Linkage groups    1"));

  // Four founders of pure lines: homozygous lines tell them from a double cross.
  testing::WriteText("four.snp",
                     "2\n1\n1\n2\n6\n1\nM1 AA TT AA TT\nM2 AA AA TT TT\n"
                     "M1 AA TT TT AA AA TT\nM2 AA TT AA TT NN AA\nM1 0\nM2 0\n");
  r = Gaengine("snp four.snp");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("the progeny being homozygous lines"));
  EXPECT_EQ(MarkersReadBack("four.plm", 30), 2);

  // A design the parents contradict, or parents no design has, is refused with the reason, and
  // nothing is written.
  const struct {
    std::string command, reason;
  } refusals[] = {
      {"snp eight_way_ril_parents_progeny.snp --tool-code 20 -o no.cdm",
       "8 parents per marker do not make a clonal F1 or double cross (CDM)"},
      {"snp f2_parents_progeny.snp --tool-code 30 -o no.plm", "2 parents per marker do not make four- or eight-way pure lines (PLM)"},
      {"snp double_cross_parents_progeny.snp --tool-code 2 -o no.map", "4 parents per marker do not make two inbred parents (MAP)"},
      {"snp three.snp -o no.map", "3 parents per marker: no design has that many"},
      {"snp eight_as_four.snp -o no.plm", "with population type 2: eight founders make type 3 (8PDH) or 4 (8PRIL)"},
  };
  testing::WriteText("three.snp", "7\n1\n1\n1\n2\n1\nM1 AA TT AA\nM1 AA AT\nM1 0\n");
  testing::WriteText("eight_as_four.snp", "2\n1\n1\n1\n2\n1\nM1 AA TT AA TT AA TT AA TT\nM1 AA TT\nM1 0\n");
  for (const auto& refusal : refusals) {
    r = Gaengine(refusal.command);
    EXPECT_EQ(r.exit_code, 1) << refusal.command;
    EXPECT_THAT(r.out, HasSubstr(refusal.reason)) << refusal.command;
  }
  for (const char* name : {"no.cdm", "no.plm", "no.map"}) EXPECT_FALSE(testing::FileExists(name)) << name;

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
