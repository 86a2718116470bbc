// The command as a breeder meets it: reproducible runs, errors in the file's terms on standard
// error with exit codes, tab-separated results and R/qtl files in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::ReadText;
using testing::WriteText;

using testing::CommandRun;
using testing::GaengineErrApart;

// The value after `label` on its summary line.
std::string SummaryValue(const std::string& out, const std::string& label) {
  const std::size_t at = out.find(label);
  if (at == std::string::npos) return "";
  std::istringstream line(out.substr(at + label.size(), out.find('\n', at) - at - label.size()));
  std::string value;
  line >> value;
  return value;
}

class BreederCommand : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    WriteText("f2.map", ReadText(testing::SourcePath("examples/f2_five_chromosomes.map")));
  }
};

TEST_F(BreederCommand, ASeedAfterTheSubcommandRepeatsARunAndTheSummaryAndLogSayIt) {
  const CommandRun drawn = GaengineErrApart("map f2.map");
  ASSERT_EQ(drawn.exit_code, 0) << drawn.err;
  const std::string seed = SummaryValue(drawn.out, "  Seed              ");
  ASSERT_FALSE(seed.empty()) << drawn.out;
  EXPECT_THAT(drawn.out, HasSubstr("(drawn: --seed repeats this run)"));
  EXPECT_THAT(drawn.out, HasSubstr("  Pair file         computed in this run"));
  EXPECT_THAT(drawn.out, HasSubstr("  Random starts     5 per group"));
  // The library's own lines stay out of sight without -v (the front end's exports show theirs
  // with it), and go to the log all the same.
  EXPECT_THAT(drawn.out, Not(HasSubstr("run successfully")));
  const std::string first_sum = ReadText("f2.sum");

  const CommandRun again = GaengineErrApart("-v map --front-end --seed " + seed + " --starts 9 f2.map");
  ASSERT_EQ(again.exit_code, 0) << again.err;
  EXPECT_THAT(again.out, HasSubstr("run successfully"));
  EXPECT_THAT(again.out, HasSubstr("  Seed              " + seed + " (given)"));
  EXPECT_THAT(again.out, HasSubstr("  Random starts     9 per group"));
  // The front end's sequence estimates its pairs its own way: the exact pair file is replaced.
  EXPECT_THAT(again.out, HasSubstr("is computed again: it holds the exact estimates, not the front-end ones"));
  ASSERT_EQ(GaengineErrApart("map --seed " + seed + " f2.map").exit_code, 0);
  EXPECT_EQ(ReadText("f2.sum"), first_sum);
  EXPECT_THAT(ReadText("MAP.log"), HasSubstr("gaengine: seed " + seed + " (given), 9 random starts per group"));
  EXPECT_THAT(again.out, HasSubstr("  Matrix files      .lod .rec .dis hold the first 100 of the 150 mapped markers"));
  EXPECT_THAT(again.out, HasSubstr("  Templates         f2.bip f2.met"));
}

TEST_F(BreederCommand, UsageErrorsExitWithTwoAndHelpSaysWhatAUserNeeds) {
  for (const char* bad : {"map --seed 1.5 f2.map", "map --seed x f2.map", "map", "nosuch f2.map",
                          "map cross2024", "map ab", "pairs .map", "map --lod high f2.map"}) {
    const CommandRun r = GaengineErrApart(bad);
    EXPECT_EQ(r.exit_code, 2) << bad << "\n" << r.err;
    EXPECT_FALSE(r.err.empty()) << bad;
  }
  EXPECT_THAT(GaengineErrApart("map cross2024").err, HasSubstr("three-letter extension"));
  EXPECT_FALSE(testing::FileExists("cross.LRD"));
  const CommandRun version = GaengineErrApart("--version");
  EXPECT_EQ(version.exit_code, 0);
  EXPECT_THAT(version.out, HasSubstr("gaengine "));
  const CommandRun help = GaengineErrApart("--help");
  EXPECT_EQ(help.exit_code, 0);
  for (const char* words : {"GAENGINE_THREADS", "beside the input file", "gaengine map ", "gaengine import rqtl",
                            "gaengine groups ", "gaengine snp "})
    EXPECT_THAT(help.out, HasSubstr(words));
  EXPECT_THAT(GaengineErrApart("map --help").out, HasSubstr("Example:"));
}

TEST_F(BreederCommand, ABadFileIsExplainedInItsOwnTermsOnStandardError) {
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
    EXPECT_THAT(r.err, HasSubstr(c.message)) << c.name;
    EXPECT_THAT(r.err, HasSubstr(c.hint)) << c.name;
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

TEST_F(BreederCommand, TheTsvOfTheMapEqualsTheSumAndPairsKeepTheirLod) {
  const CommandRun r = GaengineErrApart("map --seed 4 --tsv --min-lod 10 f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  // Section 1 of the .sum: chromosome id and name, marker (cut to 19), interval, position.
  std::vector<std::string> from_sum, from_tsv;
  std::istringstream sum(ReadText("f2.sum"));
  std::string line;
  std::getline(sum, line);
  while (std::getline(sum, line) && !line.empty()) {
    std::istringstream cells(line);
    std::string id, group, marker, interval, position;
    cells >> id >> group >> marker >> interval >> position;
    from_sum.push_back(group + " " + marker + " " + position);
  }
  std::istringstream tsv(ReadText("f2.map.tsv"));
  std::getline(tsv, line);
  EXPECT_EQ(line, "group\tmarker\tposition_cM\tinterval_cM");
  while (std::getline(tsv, line)) {
    std::istringstream cells(line);
    std::string group, marker;
    double position = 0;
    cells >> group >> marker >> position;
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", position);
    from_tsv.push_back(group + " " + marker.substr(0, 19) + " " + text);
  }
  EXPECT_EQ(from_tsv, from_sum);
  EXPECT_EQ(from_tsv.size(), 150u);
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

TEST_F(BreederCommand, AnRqtlCsvBecomesAMapFileWithTheSameGenotypeCounts) {
  // A small F2 in R/qtl's csv layout with its map row, the default codes and both missing forms.
  const char* codes[] = {"A", "H", "B", "-", "NA"};
  std::map<std::string, std::map<char, int>> counts;
  std::string csv = "id,yield", chroms = ",", positions = ",";
  for (int m = 1; m <= 6; ++m) {
    csv += ",D";
    csv += std::to_string(m);
    chroms += m <= 3 ? ",1" : ",X";
    positions += ',';
    positions += std::to_string(10 * (m - 1)) + ".5";
  }
  csv += '\n' + chroms + '\n' + positions + '\n';
  unsigned state = 12345;
  for (int i = 1; i <= 40; ++i) {
    csv += std::to_string(i) + ',' + std::to_string(100 + i);
    for (int m = 1; m <= 6; ++m) {
      state = state * 1103515245u + 12345u;
      const char* code = codes[(state >> 16) % 5];
      csv += ',';
      csv += code;
      ++counts[std::string(1, 'D') + std::to_string(m)][code[0] == '-' || code[0] == 'N' ? 'X' : code[0]];
    }
    csv += "\n";
  }
  WriteText("cross.csv", csv);
  CommandRun r = GaengineErrApart("import rqtl --pop F2 --anchors --keep-x cross.csv -o cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("6 markers, 40 individuals"));
  EXPECT_THAT(r.out, HasSubstr("1=1 X=2"));
  r = GaengineErrApart("pairs --markers cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  for (const auto& [marker, n] : counts) {
    char row[128];
    std::snprintf(row, sizeof row, "%-20s %6d %6d %6d %6d", marker.c_str(), n.count('A') ? n.at('A') : 0,
                  n.count('H') ? n.at('H') : 0, n.count('B') ? n.at('B') : 0, n.count('X') ? n.at('X') : 0);
    EXPECT_THAT(r.out, HasSubstr(row));
  }
  EXPECT_THAT(ReadText("cross.map"), HasSubstr("\nD4" + std::string(41, ' ') + "2\n"));
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
  EXPECT_THAT(r.err, HasSubstr("D1: it shows B, which a P1BC1F1 cannot show"));
  EXPECT_FALSE(testing::FileExists("bc.map"));
  EXPECT_EQ(GaengineErrApart("import rqtl --pop F9 cross.csv").exit_code, 2);
}

}  // namespace
}  // namespace gae
