// The `gaengine` command, run as a user runs it: the map runs of each tool beside the library's
// own whole runs, reproducible seeds, errors in the file's terms, the marker tools and imports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>
#include <cstdio>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "gaengine.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/rqtl_cross.h"
#include "support/export_call.h"
#include "support/temp_dir.h"
#include "support/variant_files.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::CommandRun;
using testing::ExpectHasAll;
using testing::ExpectHasNone;
using testing::Gaengine;
using testing::GaengineErrApart;
using testing::ReadText;
using testing::VariantFormat;
using testing::WriteText;

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
  // The CDM tool from --tool under any name; no LOD threshold where pairs group by frequency.
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
  // A consensus fixes the number of starts; each map's length is its last position less its first.
  ExpectHasAll(cli.out, {"  Markers           16", "  Input maps        3", "  Shared markers    16 (on two maps or more)",
                         "  Seed              5 (given)\n  Random starts     5 per group (fixed)",
                         "  PopA_3B                    14   109.5 cM", "  PopB_3B                    13   117.2 cM",
                         "  PopC_3B                    14    96.2 cM"});
  EXPECT_THAT(ReadText("CMP.log"), HasSubstr("gaengine: seed 5 (given), 5 random starts per group"));
  const testing::CommandRun starts = Gaengine("map --starts 9 maps.cmp");
  EXPECT_EQ(starts.exit_code, 2);
  EXPECT_THAT(starts.out, HasSubstr("--starts applies to MAP, CDM and PLM files"));
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
  const std::pair<const char*, std::vector<const char*>> runs[] = {
      {"markers MAP f2.map", {"f2.map: 150 markers"}},
      {"pairs --markers f2.map", {"150 markers, 11175 pairs in f2.LRD", "Chi-square"}},
      {"twopoint --pop 1 --code 11 40 10 0 10 40 0 0 0 0", {"0.2"}}};
  for (const auto& [command, words] : runs) {
    const CommandRun r = Gaengine(command);
    EXPECT_EQ(r.exit_code, 0) << command;
    for (const char* w : words) EXPECT_THAT(r.out, HasSubstr(w)) << command;
  }
  EXPECT_EQ(ReadText("f2.LRD").size(), 8u * 11175);
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
  ExpectHasAll(r.out, {"Uninformative     1 (one genotype class only): FLAT", "Warning: no estimate for 2 marker pairs!"});
  ExpectHasNone(r.out, {"nan"});
  // The exact likelihood peaks at free recombination for those pairs: an estimate, unlinked.
  r = Gaengine("map flat.map");
  EXPECT_EQ(r.exit_code, 0);
  ExpectHasAll(r.out, {"flat.LRD is computed again: it holds the front-end estimates, not the exact ones.",
                       "One-marker groups 1"});
  ExpectHasNone(r.out, {"no estimate"});
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
    ExpectHasNone(r.out, {"computed again"});
    ExpectHasAll(r.out, {"reused from an earlier run"});
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
    ExpectHasAll(Gaengine(std::string("map --front-end ") + c.file).out,
                 {stem + ".LRD is computed again: it holds the exact estimates, not the front-end ones.",
                  "the desktop program's estimates"});
  }
}

TEST_F(Command, APairFileFromOtherDataOrChangedSinceIsComputedAgain) {
  // The library reuses any pairwise file of the right size: a garbage file, or one of another
  // data set with the same marker count, once gave a wrong map with status 0.
  ASSERT_EQ(Gaengine("pairs f2.map").exit_code, 0);
  const std::string right = ReadText("f2.LRD");
  ExpectHasNone(Gaengine("pairs f2.map").out, {"computed again"});
  testing::WriteText("f2.LRD", std::string(right.size(), '\x7f'));
  ExpectHasAll(Gaengine("pairs f2.map").out, {"f2.LRD is computed again: it has changed since it was computed."});
  EXPECT_EQ(ReadText("f2.LRD"), right);
  // Other genotypes, same marker count: the first H of the file becomes a B.
  std::string data = ReadText("f2.map");
  const std::size_t at = data.find(" H ", data.find("C2M01"));
  data[at + 1] = 'B';
  testing::WriteText("f2.map", data);
  ExpectHasAll(Gaengine("pairs f2.map").out, {"f2.LRD is computed again: it was computed from other data."});
  EXPECT_NE(ReadText("f2.LRD"), right);
  testing::WriteText("f2.map", "! one more remark\n" + data);  // remarks do not count
  ExpectHasNone(Gaengine("pairs f2.map").out, {"computed again"});
}

TEST_F(Command, GroupsShowsTheTreeAndMapGroupsWhereAsked) {
  // The tree's row at a threshold counts the groups that the map command makes there.
  testing::CommandRun r = Gaengine("groups --from 2 --to 12 --step 2 f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.out;
  ExpectHasAll(r.out, {"LOD tree of f2.map: 150 markers", "gaengine map (--lod auto) takes LOD "});
  const auto row_at = [&](const std::string& lod) {
    const std::size_t at = r.out.find("\n" + lod);
    return at == std::string::npos ? std::string() : r.out.substr(at + 1, r.out.find('\n', at + 1) - at - 1);
  };
  EXPECT_EQ(row_at("   4.0").substr(0, 14), "   4.0       5");
  EXPECT_EQ(row_at("  12.0").empty(), false);
  EXPECT_EQ(row_at("   3.0"), "");  // not on the grid of the step
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
  // The options beyond the defaults say in the summary that they shaped the map.
  const std::pair<const char*, std::vector<const char*>> runs[] = {
      {"--lod 4", {"  Grouping          LOD 4.0, as asked", "  Pipeline          gaengine's own"}},
      {"--lod auto", {": the groups stay the same from "}},
      {"--order frame --lod auto",
       {"; pairs link only below a frequency of 0.50", "  Ordering          co-dominant markers ordered first"}}};
  for (const auto& [options, words] : runs) {
    r = Gaengine(std::string("--seed 5 map ") + options + " f2.map");
    ASSERT_EQ(r.exit_code, 0) << r.out;
    for (const char* w : words) EXPECT_THAT(r.out, HasSubstr(w)) << options;
    EXPECT_THAT(r.out, HasSubstr("  Linkage groups    5")) << options;
  }
  EXPECT_THAT(Gaengine("map --lod high f2.map").out, HasSubstr("--lod takes a number or \"auto\""));
}

// The value after `label` on its summary line.
std::string SummaryValue(const std::string& out, const std::string& label) {
  const std::size_t at = out.find(label);
  if (at == std::string::npos) return "";
  std::istringstream line(out.substr(at + label.size(), out.find('\n', at) - at - label.size()));
  std::string value;
  line >> value;
  return value;
}

TEST_F(Command, ASeedAfterTheSubcommandRepeatsARunAndTheSummaryAndLogSayIt) {
  const CommandRun drawn = GaengineErrApart("map f2.map");
  ASSERT_EQ(drawn.exit_code, 0) << drawn.err;
  const std::string seed = SummaryValue(drawn.out, "  Seed              ");
  ASSERT_FALSE(seed.empty()) << drawn.out;
  ExpectHasAll(drawn.out, {"(drawn: --seed repeats this run)", "  Pair file         computed in this run",
                           "  Random starts     5 per group"});
  // The library's own lines show only with -v; the front end's pairs replace the exact ones.
  ExpectHasNone(drawn.out, {"run successfully"});
  const std::string first_sum = ReadText("f2.sum");
  const CommandRun again = GaengineErrApart("-v map --front-end --seed " + seed + " --starts 9 f2.map");
  ASSERT_EQ(again.exit_code, 0) << again.err;
  ExpectHasAll(again.out, {"run successfully", "  Seed              " + seed + " (given)", "  Random starts     9 per group",
                           "is computed again: it holds the exact estimates, not the front-end ones",
                           "  Matrix files      .lod .rec .dis hold the first 100 of the 150 mapped markers",
                           "  Templates         f2.bip f2.met"});
  ASSERT_EQ(GaengineErrApart("map --seed " + seed + " f2.map").exit_code, 0);
  EXPECT_EQ(ReadText("f2.sum"), first_sum);
  EXPECT_THAT(ReadText("MAP.log"), HasSubstr("gaengine: seed " + seed + " (given), 9 random starts per group"));
}

TEST_F(Command, UsageErrorsExitWithTwoAndHelpSaysWhatAUserNeeds) {
  for (const char* bad : {"map --seed 1.5 f2.map", "map --seed x f2.map", "map", "nosuch f2.map",
                          "map cross2024", "map ab", "pairs .map"}) {
    const CommandRun r = GaengineErrApart(bad);
    EXPECT_EQ(r.exit_code, 2) << bad << "\n" << r.err;
    EXPECT_FALSE(r.err.empty()) << bad;
  }
  EXPECT_THAT(GaengineErrApart("map cross2024").err, HasSubstr("three-letter extension"));
  EXPECT_FALSE(testing::FileExists("cross.LRD"));
  const CommandRun version = GaengineErrApart("--version"), help = GaengineErrApart("--help");
  EXPECT_EQ(version.exit_code + help.exit_code, 0);
  EXPECT_THAT(version.out, HasSubstr("gaengine "));
  ExpectHasAll(help.out, {"GAENGINE_THREADS", "beside the input file", "gaengine map ", "gaengine import rqtl",
                          "gaengine groups ", "gaengine snp "});
  EXPECT_THAT(GaengineErrApart("map --help").out, HasSubstr("Example:"));
}

TEST_F(Command, ABadFileIsExplainedInItsOwnTermsOnStandardError) {
  const std::string header = "7\n1\n1\n2\n3\n";
  const std::string anchors = "M1 0\nM2 0\n";
  struct Case {
    std::string name, text, message, hint;
  };
  const std::string long1(40, 'L'), long2 = std::string(40, 'L') + "22";
  const std::vector<Case> cases = {
      {"typo.map", header + "M1 A H B\nM2 A Q B\n" + anchors,
       "typo.map line 7, marker M2, individual 2: 'Q' is not a genotype code of an F2 (A H B D R X)", ""},
      {"lower.map", header + "M1 A H b\nM2 A H B\n" + anchors, "'b' is not a genotype code of an F2",
       "write 'B', not 'b'"},
      {"bom.map", "\xEF\xBB\xBF" + header + "M1 A H B\nM2 A H B\n" + anchors, "PopulationType", "byte-order mark"},
      {"long.map", header + long1 + " A H B\n" + long2 + " A B B\n" + long1 + " 0\n" + long2 + " 0\n",
       "two markers have the same name", "cut to 35 characters"},
      {"short.map", header + "M1 A H\nM2 A H B\n" + anchors, "marker M1, individual 3: 'M2'", "one genotype short"},
      {"ril.map", "4\n1\n1\n2\n3\nM1 A H B\nM2 A D B\n" + anchors,
       "individual 2: 'D' is not a genotype code of an RIL or F1RIL (A H B X)", ""},
      // A clonal type that the marker's category rules out; the library's line names no individual.
      {"type.cdm", "1\n1\n1\n2\n4\nABCD     C1 AC AD BC BD\nABCD     C2 AC XC BC BD\n",
       "type.cdm line 7, marker C2, individual 2: 'XC' is not a genotype code of a Clonal F1 marker of type ABCD "
       "(AC AD BC BD XX)", ""},
      {"half.cdm", "1\n1\n1\n2\n4\nABCD     C1 AC AD BC BD\nA=B      C2 XC XD BD XX\n",
       "individual 3: 'BD' is not a genotype code of a Clonal F1 marker of type A=B (XC XD XX)", ""},
      {"lower.plm", "2\n1\n1\n2\n4\nABCD     P1 A B C D\nABAB     P2 A b A X\n",
       "lower.plm line 7, marker P2, individual 2: 'b' is not a genotype code of a 4PRIL marker of type ABAB "
       "(A B C D X)", "write 'B', not 'b'"},
  };
  for (const Case& c : cases) {
    WriteText(c.name, c.text);
    const CommandRun r = GaengineErrApart("map " + c.name);
    EXPECT_EQ(r.exit_code, 1) << c.name;
    ExpectHasAll(r.err, {c.message, c.hint});
    EXPECT_THAT(r.out, Not(HasSubstr("--Error"))) << c.name;
  }
  if (::geteuid() != 0) {  // the super-user may write anywhere
    ASSERT_EQ(::system("mkdir locked && cp f2.map locked/ && chmod a-w locked"), 0);
    const CommandRun r = GaengineErrApart("map locked/f2.map");
    EXPECT_EQ(r.exit_code, 1);
    EXPECT_THAT(r.err, HasSubstr("cannot write in the folder 'locked'"));
    ::system("chmod u+w locked");
  }
}

TEST_F(Command, TheTsvOfTheMapEqualsTheSumAndPairsKeepTheirLod) {
  const CommandRun r = GaengineErrApart("map --seed 4 --tsv --min-lod 10 f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  // Section 1 of the .sum: chromosome id and name, marker (cut to 19), interval, position.
  const std::vector<std::string> sum = testing::ReadLines("f2.sum"), tsv = testing::ReadLines("f2.map.tsv");
  ASSERT_EQ(tsv.at(0), "group\tmarker\tposition_cM\tinterval_cM");
  std::vector<std::string> from_sum, from_tsv;
  for (std::size_t k = 1; k < sum.size() && !sum[k].empty(); ++k) {
    std::istringstream cells(sum[k]);
    std::string id, group, marker, interval, position;
    cells >> id >> group >> marker >> interval >> position;
    from_sum.push_back(group + " " + marker + " " + position);
  }
  for (std::size_t k = 1; k < tsv.size(); ++k) {
    std::istringstream cells(tsv[k]);
    std::string group, marker;
    double position = 0;
    cells >> group >> marker >> position;
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", position);
    from_tsv.push_back(group + " " + marker.substr(0, 19) + " " + text);
  }
  EXPECT_EQ(from_tsv, from_sum);
  EXPECT_EQ(from_tsv.size(), 150u);
  std::string line;
  // Every pair row is at or above the asked LOD, and strongly linked neighbours are there.
  std::istringstream pairs(ReadText("f2.pairs.tsv"));
  std::getline(pairs, line);
  int rows = 0;
  while (std::getline(pairs, line)) {
    std::istringstream cells(line);
    std::string a, b;
    double rec = 0, lod = 0;
    cells >> a >> b >> rec >> lod;
    EXPECT_GE(lod, 10.0);
    EXPECT_LE(rec, 0.5);
    ++rows;
  }
  EXPECT_GT(rows, 100);
  EXPECT_LT(rows, 11175);
}

TEST_F(Command, AnRqtlCsvBecomesAMapFileWithTheSameGenotypeCounts) {
  // An F2 in R/qtl's csv layout, its second chromosome the X, missing calls as "-" and "NA".
  testing::BredCross cross = testing::BreedCross(7, 2, 3, 40, 12345);
  for (int m = 0; m < 6; ++m) {
    cross.chromosomes[m] = m < 3 ? "1" : "X";
    for (int i = m; i < 40; i += 5) cross.letters[m][i] = 'X';
  }
  std::string csv = testing::RqtlText(cross);
  for (std::size_t at; (at = csv.find(",-\n")) != std::string::npos;) csv.replace(at, 3, ",NA\n");
  WriteText("cross.csv", csv);
  CommandRun r = GaengineErrApart("import rqtl --pop F2 --anchors --keep-x cross.csv -o cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  ExpectHasAll(r.out, {"6 markers, 40 individuals", "1=1 X=2"});
  r = GaengineErrApart("pairs --markers cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  for (int m = 0; m < 6; ++m) {
    const std::string& l = cross.letters[m];
    char row[128];
    std::snprintf(row, sizeof row, "%-20s %6d %6d %6d %6d", cross.names[m].c_str(),
                  static_cast<int>(std::count(l.begin(), l.end(), 'A')), static_cast<int>(std::count(l.begin(), l.end(), 'H')),
                  static_cast<int>(std::count(l.begin(), l.end(), 'B')), static_cast<int>(std::count(l.begin(), l.end(), 'X')));
    EXPECT_THAT(r.out, HasSubstr(row));
  }
  EXPECT_THAT(ReadText("cross.map"), HasSubstr("\nC2M1" + std::string(39, ' ') + "2\n"));
  // A code outside the file's set is named where it stands; a backcross cannot show P2 homozygotes.
  WriteText("typo.csv", "id,D1,D2\n,1,1\n1,A,Q\n");
  r = GaengineErrApart("import rqtl --pop 7 typo.csv");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_THAT(r.err, HasSubstr("typo.csv line 3, marker D2, individual 1: 'Q' is none of the genotype codes"));
  r = GaengineErrApart("import rqtl --pop P1BC1F1 cross.csv -o bc.map");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_THAT(r.err, HasSubstr("% of calls are B, which a P1BC1F1 cannot show; an F2"));
  r = GaengineErrApart("import rqtl --pop P1BC1F1 --force cross.csv -o bc.map");
  EXPECT_EQ(r.exit_code, 1);
  EXPECT_THAT(r.err, HasSubstr("C1M1: it shows B, which a P1BC1F1 cannot show"));
  EXPECT_FALSE(testing::FileExists("bc.map"));
  EXPECT_EQ(GaengineErrApart("import rqtl --pop F9 cross.csv").exit_code, 2);
}

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

TEST_F(Command, SnpFilesBecomeInputFilesOfTheirMapTools) {
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

TEST_F(Command, BinWritesTheReducedFileAndTheTableOfBins) {
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

// Each group of <stem>.map.tsv holds one chromosome (C01 of C01M001), and each chromosome one group.
void ExpectGroupsAreChromosomes(const std::string& file, const std::string& text, int chromosomes) {
  testing::WriteText(file, text);
  const testing::CommandRun r = testing::Gaengine("--seed 3 map --tsv " + file);
  ASSERT_EQ(r.exit_code, 0) << r.out;
  std::map<std::string, std::set<std::string>> held;
  std::istringstream tsv(testing::ReadText(file.substr(0, file.size() - 4) + ".map.tsv"));
  std::string group, marker, rest;
  std::getline(tsv, rest);  // header
  while (std::getline(tsv, group, '\t') && std::getline(tsv, marker, '\t') && std::getline(tsv, rest))
    held[group].insert(marker.substr(0, 3));
  std::set<std::string> seen;
  for (const auto& [g, chromosomes_held] : held) {
    EXPECT_EQ(chromosomes_held.size(), 1u) << file << " group " << g << "\n" << r.out;
    seen.insert(chromosomes_held.begin(), chromosomes_held.end());
  }
  EXPECT_EQ(static_cast<int>(held.size()), chromosomes) << file << "\n" << r.out;
  EXPECT_EQ(static_cast<int>(seen.size()), chromosomes) << file;
}

TEST_F(Command, BredPopulationsGroupByChromosome) {
  // Founder patterns from fully informative to bi-allelic, as a SNP panel gives them.
  const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                      12222222, 12312312, 11335577, 12345671, 12121121};
  for (int type = 1; type <= 4; ++type)
    for (int lines : {150, 300})
      ExpectGroupsAreChromosomes("pl" + std::to_string(type * 1000 + lines) + ".plm",
                                 testing::PlmInputFile(testing::SimulatePureLineData(
                                     type, 3, 30, 3.0, lines, type <= 2 ? four : eight, 0.03, 11 + type + lines)),
                                 3);
  for (int type : {3, 4})  // doubled haploids and lines, 1% of the scores wrong
    ExpectGroupsAreChromosomes("lines" + std::to_string(type) + ".map",
                               testing::BiparentalInputFile(
                                   testing::SimulateBiparentalData(type, 4, 30, 3.0, 200, 0.01, 0.02, 5 + type)),
                               4);
}

TEST_F(Command, TheWrittenFileIsMappedAsItStands) {
  // 30 sites of 60 plants, of which 12 uninformative (parents alike).
  testing::WriteVariantFile("f2.vcf.gz", testing::BredPopulationCalls(7, 30, 60, 0.05, 99).vcf, VariantFormat::kBgzip);
  CommandRun r = GaengineErrApart("import vcf f2.vcf.gz -o f2.map --parents mother,father --pop F2");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  ExpectHasAll(r.out, {"18 markers, 60 individuals -> f2.map (F2 (MAP type 7))", "sites read: 30\n",
                       "parents not informative: 12\n", "18 from ID"});
  EXPECT_TRUE(testing::FileExists("f2.loci.tsv"));
  r = GaengineErrApart("map f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(testing::SumMapRows("f2.sum").size(), 18u);
  // A clonal F1's categories, multi-allelic ABCD among them, go to the clonal tool as they stand.
  testing::WriteVariantFile("cf1.bcf", testing::BredPopulationCalls(0, 28, 60, 0.05, 5).vcf, VariantFormat::kBcf);
  r = GaengineErrApart("import vcf cf1.bcf -o cf1.cdm --parents mother,father");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("20 markers, 60 individuals -> cf1.cdm (Clonal F1 (CDM type 1))"));
  r = GaengineErrApart("map cf1.cdm");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_TRUE(testing::FileExists("cf1.sumf"));
}

struct BadInput {
  const char* what;
  std::string arguments;
  std::string message;
};

TEST_F(Command, EachBadInputIsNamedAndLeavesNoFile) {
  const std::string header = testing::VcfHeader({"P1", "P2", "o1"});
  const std::string good = testing::VcfRecord("chr1", 10, "m1", "A", "C", "GT", {"0/0", "1/1", "0/1"});
  testing::WriteVariantFile("good.vcf", header + good, VariantFormat::kPlain);
  std::string no_gt = header + good;
  no_gt.replace(no_gt.find("##FORMAT=<ID=GT"), no_gt.find('\n', no_gt.find("##FORMAT=<ID=GT")) + 1 - no_gt.find("##FORMAT=<ID=GT"), "");
  for (std::size_t at; (at = no_gt.find("\tGT\t")) != std::string::npos;) no_gt.replace(at, 4, "\tDP\t");
  testing::WriteText("nogt.vcf", no_gt);
  testing::WriteText("columns.vcf", header + good + "chr1\t20\tm2\tA\tC\t.\tPASS\t.\tGT\t0/0\t1/1\n");
  // Several bgzip blocks, the file cut in the middle of one.
  std::string many = testing::VcfHeader({"P1", "P2", "o1", "o2"});
  for (int k = 1; k <= 6000; ++k)
    many += testing::VcfRecord("chr1", 10 * k, ".", "A", "C", "GT", {"0/0", "1/1", "0/1", k % 2 ? "0/0" : "1/1"});
  testing::WriteVariantFile("whole.vcf.gz", many, VariantFormat::kBgzip);
  const std::string whole = testing::ReadText("whole.vcf.gz");
  testing::WriteText("cut.vcf.gz", whole.substr(0, whole.size() / 2 + 7));
  for (const BadInput& c : std::vector<BadInput>{
           {"parent not a sample", "good.vcf --parents P1,Q9",
            "good.vcf: parent 'Q9' is not among the samples; the 3 samples are P1, P2, o1"},
           {"no GT field", "nogt.vcf --parents P1,P2", "nogt.vcf: no GT field"},
           {"truncated bgzip block", "cut.vcf.gz --parents P1,P2", "truncated bgzip block"},
           {"sample columns", "columns.vcf --parents P1,P2",
            "site 2 (chr1:20), line 10: the number of sample columns differs from the 3 samples of the header line"}}) {
    SCOPED_TRACE(c.what);
    const CommandRun r = GaengineErrApart("import vcf " + c.arguments + " --pop F2 -o out.map");
    EXPECT_EQ(r.exit_code, 1);
    EXPECT_THAT(r.err, HasSubstr(c.message));
    for (const char* left : {"out.map", "out.loci.tsv", "out.map.part", "out.loci.tsv.part"})
      EXPECT_FALSE(testing::FileExists(left)) << left;
  }
  // The whole file, for contrast, is fine.
  EXPECT_EQ(GaengineErrApart("import vcf whole.vcf.gz --parents P1,P2 --pop F2 -o out.map").exit_code, 0);
}

}  // namespace
}  // namespace gae
