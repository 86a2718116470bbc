// The `gaengine` command, run as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "gaengine.h"
#include "support/command_run.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using testing::ReadText;

using testing::Gaengine;

class Command : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    testing::WriteText("f2.map", ReadText(testing::SourcePath("examples/f2_five_chromosomes.map")));
  }
};

// The command drives the stages one by one, as a front end does; with the same seed for the
// random starts it must come to the very files of the library's own whole run.
struct ToolRun {
  const char* example;
  const char* file;
  testing::PathExport all_by_default;
  std::vector<std::string> summary;  // lines of the command's summary
  std::vector<std::string> same;     // files the export writes alike
};

TEST_F(Command, MapOfEachToolBuildsTheSameMapAsTheWholeRunExportAndSummarisesIt) {
  const ToolRun runs[] = {
      {nullptr, "f2.map", MAPAllByDefault,
       {"  Population        F2 (type 7)", "  Pipeline          front end", "  Markers read      150", "  Linkage groups    5",
        "  Unlinked markers  0", "set to missing in f2EC.map"},
       {"f2.sum", "f2.mtp", "f2.err"}},
      {"clonal_f1.cdm", "clonal.cdm", CDMAllByDefault,
       {"(type 1)", "  Markers read      6", "  First parent ", "  Second parent ", "clonal.hap",
        "set to missing in clonalEC.cdm"},
       {"clonal.sum", "clonal.sumf", "clonal.hap"}},
      {"four_way_ril.plm", "four.plm", PLMAllByDefault,
       {"  Population        4PRIL (type 2)", "  Markers read      6", " four.plq four.err fourEC.plm"},
       {"four.sum", "four.mtp", "fourEC.plm"}},
  };
  for (const ToolRun& run : runs) {
    if (run.example != nullptr) testing::WriteText(run.file, ReadText(testing::SourcePath("examples/") + run.example));
    const testing::CommandRun cli = Gaengine("--seed 31 map --front-end " + std::string(run.file));
    ASSERT_EQ(cli.exit_code, 0) << cli.out;
    for (const std::string& line : run.summary) EXPECT_THAT(cli.out, HasSubstr(line)) << run.file;
    std::vector<std::string> texts;
    for (const std::string& f : run.same) texts.push_back(ReadText(f));
    ::setenv("GAENGINE_SEED", "31", 1);
    ResetProcessStateForTesting();  // a fresh process, as the command is
    EXPECT_EQ(testing::CallOnPath(run.all_by_default, run.file), 0);
    ::unsetenv("GAENGINE_SEED");
    for (std::size_t k = 0; k < texts.size(); ++k) EXPECT_EQ(ReadText(run.same[k]), texts[k]) << run.same[k];
  }
  // A clonal file takes the CDM tool from its extension, or from --tool under any name. Pure
  // lines group by recombination frequency, as does the clonal tool: a LOD threshold has no
  // meaning there.
  testing::WriteText("other.txt", ReadText("clonal.cdm"));
  EXPECT_EQ(Gaengine("map --tool cdm other.txt").exit_code, 0);
  EXPECT_TRUE(testing::FileExists("other.summ"));
  EXPECT_EQ(Gaengine("map --front-end --tool CDM --lod 4 other.txt").exit_code, 2);
  EXPECT_EQ(Gaengine("map --front-end --lod 4 four.plm").exit_code, 2);
}

TEST_F(Command, MapOnAConsensusFileSummarisesHowEachInputMapAgrees) {
  testing::WriteText("maps.cmp", ReadText(testing::SourcePath("examples/three_maps_3b.cmp")));
  const testing::CommandRun cli = Gaengine("--seed 5 map maps.cmp");
  ASSERT_EQ(cli.exit_code, 0) << cli.out;
  EXPECT_THAT(cli.out, HasSubstr("  Markers           16"));
  EXPECT_THAT(cli.out, HasSubstr("  Input maps        3"));
  EXPECT_THAT(cli.out, HasSubstr("  Shared markers    16 (on two maps or more)"));
  // The seed chooses the ordering's starts, whose number a consensus does not let be chosen.
  EXPECT_THAT(cli.out, HasSubstr("  Seed              5 (given)\n  Random starts     5 per group (fixed)"));
  EXPECT_THAT(ReadText("CMP.log"), HasSubstr("gaengine: seed 5 (given), 5 random starts per group"));
  const testing::CommandRun starts = Gaengine("map --starts 9 maps.cmp");
  EXPECT_EQ(starts.exit_code, 2);
  EXPECT_THAT(starts.out, HasSubstr("--starts applies to MAP, CDM and PLM files"));
  // Each map's own length (last position less first), in the order of the file.
  EXPECT_THAT(cli.out, HasSubstr("  PopA_3B                    14   109.5 cM"));
  EXPECT_THAT(cli.out, HasSubstr("  PopB_3B                    13   117.2 cM"));
  EXPECT_THAT(cli.out, HasSubstr("  PopC_3B                    14    96.2 cM"));
  EXPECT_TRUE(testing::FileExists("maps.sum") && testing::FileExists("maps.dis"));

  // PopB with its second and twelfth markers exchanged: the pairs are computed again, and PopB
  // stands out by the lowest rank correlation.
  std::string text = ReadText("maps.cmp");
  const size_t second = text.find("gwm113                              PopB");
  const size_t twelfth = text.find("gwm269                              PopB");
  ASSERT_TRUE(second != std::string::npos && twelfth != std::string::npos);
  text.replace(twelfth, 6, "gwm113");
  text.replace(second, 6, "gwm269");
  testing::WriteText("maps.cmp", text);
  const testing::CommandRun swapped = Gaengine("--seed 5 map maps.cmp");
  ASSERT_EQ(swapped.exit_code, 0) << swapped.out;
  EXPECT_THAT(swapped.out, HasSubstr("maps.LRD is computed again: it was computed from other data."));
  auto correlation = [&](const std::string& map) {
    const size_t at = swapped.out.find("  " + map + " ");
    return std::stod(swapped.out.substr(swapped.out.find(" cM", at) + 3, 17));
  };
  EXPECT_LT(correlation("PopB_3B"), 0.6);
  EXPECT_GT(correlation("PopA_3B"), 0.9);
  EXPECT_GT(correlation("PopC_3B"), 0.9);
}

TEST_F(Command, OtherCommandsReportThroughTheirExitStatus) {
  testing::CommandRun r = Gaengine("markers MAP f2.map");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_THAT(r.out, HasSubstr("f2.map: 150 markers"));
  r = Gaengine("pairs --markers f2.map");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_THAT(r.out, HasSubstr("150 markers, 11175 pairs in f2.LRD"));
  EXPECT_THAT(r.out, HasSubstr("Chi-square"));
  EXPECT_EQ(ReadText("f2.LRD").size(), 8u * 11175);
  r = Gaengine("twopoint --pop 1 --code 11 40 10 0 10 40 0 0 0 0");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_THAT(r.out, HasSubstr("0.2"));
}

TEST_F(Command, MapNamesMarkersOfOneGenotypeClassAndWarnsOfPairsWithoutEstimate) {
  // An F2 marker heterozygous everywhere beside one with as many H as A and B: no estimate.
  std::string mixed, hets;
  for (int k = 0; k < 198; ++k) {
    mixed += k < 54 ? " A" : k < 153 ? " H" : " B";
    hets += " H";
  }
  testing::WriteText("flat.map", "7\n1\n1\n3\n198\nM1" + mixed + "\nFLAT" + hets + "\nM3" + mixed +
                                     "\nM1 0\nFLAT 0\nM3 0\n");
  testing::CommandRun r = Gaengine("map --front-end flat.map");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_THAT(r.out, HasSubstr("Uninformative     1 (one genotype class only): FLAT"));
  EXPECT_THAT(r.out, HasSubstr("Warning: no estimate for 2 marker pairs!"));
  EXPECT_THAT(r.out, ::testing::Not(HasSubstr("nan")));
  // The exact likelihood peaks at free recombination for those pairs: an estimate, unlinked.
  r = Gaengine("map flat.map");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_THAT(r.out, HasSubstr("flat.LRD is computed again: it holds the front-end estimates, not the exact ones."));
  EXPECT_THAT(r.out, ::testing::Not(HasSubstr("no estimate")));
  EXPECT_THAT(r.out, HasSubstr("One-marker groups 1"));
}

// A clonal or pure-line input changed since its pair file was computed is never mapped from the
// old pairs: the pair file is computed again, and equals one computed afresh from the new input.
TEST_F(Command, AChangedClonalOrPureLineInputGetsANewPairFile) {
  struct Case {
    const char* example;
    const char* file;
    const char* from;
    const char* to;
    bool clonal;
  };
  for (const Case c : {Case{"examples/clonal_f1.cdm", "clonal.cdm", "CM02       BD BC", "CM02       BD BD", true},
                       Case{"examples/four_way_ril.plm", "four.plm", "PM02       B C C", "PM02       B C D", false}}) {
    SCOPED_TRACE(c.file);
    std::string data = ReadText(testing::SourcePath(c.example));
    testing::WriteText(c.file, data);
    ASSERT_EQ(Gaengine(std::string("map ") + c.file).exit_code, 0);
    const std::string stem = std::string(c.file).substr(0, std::string(c.file).size() - 4);
    const std::string before = ReadText(stem + ".LRD");
    testing::CommandRun r = Gaengine(std::string("map ") + c.file);
    EXPECT_THAT(r.out, ::testing::Not(HasSubstr("computed again")));
    EXPECT_THAT(r.out, HasSubstr("reused from an earlier run"));
    const std::size_t at = data.find(c.from);
    ASSERT_NE(at, std::string::npos);
    data.replace(at, std::string(c.from).size(), c.to);
    testing::WriteText(c.file, data);
    r = Gaengine(std::string("map ") + c.file);
    EXPECT_THAT(r.out, HasSubstr(stem + ".LRD is computed again: it was computed from other data."));
    // The same input in a fresh project: the very same pairs.
    const std::string fresh = std::string("fresh") + (c.clonal ? ".cdm" : ".plm");
    testing::WriteText(fresh, data);
    ASSERT_EQ(Gaengine("map " + fresh).exit_code, 0);
    EXPECT_EQ(ReadText(stem + ".LRD"), ReadText("fresh.LRD"));
    EXPECT_NE(ReadText(stem + ".LRD"), before);
    // The other estimator's pairs are not taken for these either.
    r = Gaengine(std::string("map --front-end ") + c.file);
    EXPECT_THAT(r.out, HasSubstr(stem + ".LRD is computed again: it holds the exact estimates, not the front-end ones."));
    EXPECT_THAT(r.out, HasSubstr("the desktop program's estimates"));
  }
}

TEST_F(Command, APairFileFromOtherDataOrChangedSinceIsComputedAgain) {
  // The library reuses any pairwise file of the right size: a garbage file, or one of another
  // data set with the same marker count, once gave a wrong map with status 0.
  ASSERT_EQ(Gaengine("pairs f2.map").exit_code, 0);
  const std::string right = ReadText("f2.LRD");
  testing::CommandRun r = Gaengine("pairs f2.map");
  EXPECT_THAT(r.out, ::testing::Not(HasSubstr("computed again")));
  testing::WriteText("f2.LRD", std::string(right.size(), '\x7f'));
  r = Gaengine("pairs f2.map");
  EXPECT_THAT(r.out, HasSubstr("f2.LRD is computed again: it has changed since it was computed."));
  EXPECT_EQ(ReadText("f2.LRD"), right);
  // Other genotypes, same marker count: the first H of the file becomes a B.
  std::string data = ReadText("f2.map");
  const std::size_t at = data.find(" H ", data.find("C2M01"));
  data[at + 1] = 'B';
  testing::WriteText("f2.map", data);
  r = Gaengine("pairs f2.map");
  EXPECT_THAT(r.out, HasSubstr("f2.LRD is computed again: it was computed from other data."));
  EXPECT_NE(ReadText("f2.LRD"), right);
  // Remarks do not count.
  testing::WriteText("f2.map", "! one more remark\n" + data);
  r = Gaengine("pairs f2.map");
  EXPECT_THAT(r.out, ::testing::Not(HasSubstr("computed again")));
}

TEST_F(Command, GroupsShowsTheTreeAndMapGroupsWhereAsked) {
  // The tree's row at a threshold counts the groups that the map command makes there.
  testing::CommandRun r = Gaengine("groups --from 2 --to 12 --step 2 f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("LOD tree of f2.map: 150 markers"));
  const auto row_at = [&](const std::string& lod) {
    const std::size_t at = r.out.find("\n" + lod);
    return at == std::string::npos ? std::string() : r.out.substr(at + 1, r.out.find('\n', at + 1) - at - 1);
  };
  EXPECT_EQ(row_at("   4.0").substr(0, 14), "   4.0       5");
  EXPECT_EQ(row_at("  12.0").empty(), false);
  EXPECT_EQ(row_at("   3.0"), "");  // not on the grid of the step
  EXPECT_THAT(r.out, HasSubstr("gaengine map (--lod auto) takes LOD "));
  // On its default range the tree names the threshold the map command takes by default, under
  // the same cap, whatever the cap.
  for (const std::string cap : {"", " --max-rf 0.3"}) {
    const testing::CommandRun tree = Gaengine("groups" + cap + " f2.map");
    const std::size_t at = tree.out.find("takes LOD ");
    ASSERT_NE(at, std::string::npos) << tree.out;
    const std::string named = tree.out.substr(at + 6, tree.out.find(':', at) - at - 6);
    const testing::CommandRun by_default = Gaengine("--seed 5 map" + cap + " f2.map");
    EXPECT_THAT(by_default.out, HasSubstr("  Grouping          " + named + ":")) << cap;
  }
  r = Gaengine("--seed 5 map --lod 4 f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("  Grouping          LOD 4.0, as asked"));
  EXPECT_THAT(r.out, HasSubstr("  Pipeline          gaengine's own"));
  EXPECT_THAT(r.out, HasSubstr("  Linkage groups    5"));
  r = Gaengine("--seed 5 map --lod auto f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr(": the groups stay the same from "));
  EXPECT_THAT(r.out, HasSubstr("  Linkage groups    5"));
  // The options beyond the defaults say in the summary that they shaped the map.
  r = Gaengine("--seed 5 map --order frame --lod auto f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  EXPECT_THAT(r.out, HasSubstr("; pairs link only below a frequency of 0.50"));
  EXPECT_THAT(r.out, HasSubstr("  Ordering          co-dominant markers ordered first"));
  EXPECT_THAT(r.out, HasSubstr("  Linkage groups    5"));
  EXPECT_THAT(Gaengine("map --lod high f2.map").out, HasSubstr("--lod takes a number or \"auto\""));
}

}  // namespace
}  // namespace gae
