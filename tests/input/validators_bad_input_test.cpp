// Every code the validators can raise, each from a small file that a user could write: the
// code comes back in Status and the log holds the cause, then the entry's 1101 line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"
#include "validator_corpus.h"

namespace gae {
namespace {

using testing::Edit;
using Edits = std::vector<std::pair<std::string, std::string>>;

struct BadInput {
  const char* tool;
  const std::string* base;
  Edits edits;
  int status;
  std::vector<std::string> lines;  // the cause, without the 1101 line
};

// The tool's validator on `path`: its status, and what it printed to `printed`.
int CheckByTool(const std::string& tool, const std::string& path, std::string* printed = nullptr) {
  static const std::map<std::string, testing::PathExport> exports = {
      {"BIP", CheckErrorBIP}, {"SDL", CheckErrorSDL}, {"MET", CheckErrorMET}, {"NAM", CheckErrorNAM},
      {"PLQ", CheckErrorPLQ}, {"CDQ", CheckErrorCDQ}, {"CSL", CheckErrorCSL}, {"AOV", CheckErrorAOV}};
  if (tool != "CMP") return testing::CallOnPath(exports.at(tool), path, printed);
  int a = 0, b = 0, c = 0, d = 0, status = -1;
  ::testing::internal::CaptureStdout();
  CMPFindNumMarkers(static_cast<int>(path.size()), path.data(), &a, &b, &c, &d, &status);
  const std::string out = ::testing::internal::GetCapturedStdout();
  if (printed != nullptr) *printed = out;
  return status;
}

std::string Entry(const std::string& tool) {
  return tool == "CMP" ? "DLL CMPFindNumMarkers" : "DLL CheckError" + tool;
}

using testing::kAov;
using testing::kBip;
using testing::kCdq;
using testing::kCmp;
using testing::kCsl;
using testing::kMet;
using testing::kNam;
using testing::kPlq;
using testing::kSdl;

const std::vector<BadInput>& Corpus() {
  static const std::vector<BadInput> corpus = {
      // Header fields.
      {"BIP", &kBip, {{"1 !ind", "x !ind"}}, 2001,
       {"--Error2001: cannot read Indicator for mapping (1) or simulation (2)!"}},
      {"BIP", &kBip, {{"1 !ind", "3 !ind"}}, 2002, {"--Error2002: Indicator=3 out of range [1:2]!"}},
      {"SDL", &kSdl, {{"7 !pop", "F2 !pop"}}, 2003, {"--Error2003: cannot read PopulationType!"}},
      {"SDL", &kSdl, {{"7 !pop", "21 !pop"}}, 2004, {"--Error2004: PopulationType=21 out of range [1:20]!"}},
      {"NAM", &kNam, {{"4 !pop", "7 !pop"}}, 2005,
       {"--Error2005: PopulationType=7 out of range [1:4,5:6,9:12,17:20]!"}},
      {"CDQ", &kCdq, {{"1 !pop", "3 !pop"}}, 2006, {"--Error2006: PopulationType=3 out of range [1:2]!"}},
      {"PLQ", &kPlq, {{"2 !pop", "5 !pop"}}, 2007, {"--Error2007: PopulationType=5 out of range [1:4]!"}},
      {"SDL", &kSdl, {{"1 !fn", "K !fn"}}, 2008, {"--Error2008: cannot read MappingFunction!"}},
      {"MET", &kMet, {{"1 !fn", "4 !fn"}}, 2009, {"--Error2009: MappingFunction=4 out of range [1:3]!"}},
      {"SDL", &kSdl, {{"2 !space", " !space"}}, 2010, {"--Error2010: cannot read SpaceType on linkage maps!"}},
      {"CMP", &kCmp, {{"2 !space", "3 !space"}}, 2011, {"--Error2011: Marker SpaceType=3 out of range [1:2]!"}},
      {"PLQ", &kPlq, {{"1 !unit", "cM !unit"}}, 2012, {"--Error2012: cannot read SpaceUnit on linkage maps!"}},
      {"CDQ", &kCdq, {{"1 !unit", "0 !unit"}}, 2013, {"--Error2013: Marker SpaceUnit=0 out of range [1:2]!"}},
      {"SDL", &kSdl, {{"2 !chs", "two !chs"}}, 2014, {"--Error2014: cannot read Number of Chromosomes (NumChs)!"}},
      {"CMP", &kCmp, {{"2 !chs", "0 !chs"}}, 2015, {"--Error2015: Number of Chromosomes=0 out of range [1:]!"}},
      {"CSL", &kCsl, {{"2 !markers", "2.5 !markers"}}, 2016,
       {"--Error2016: cannot read Number of Markers (NumMarkers)!"}},
      {"CSL", &kCsl, {{"2 !markers", "0 !markers"}}, 2017, {"--Error2017: Number of Markers=0 out of range [1:]!"}},
      {"SDL", &kSdl, {{"4 !size", "! size\n"}}, 2018, {"--Error2018: cannot read PopulationSize!"}},
      {"MET", &kMet, {{"4 !size", "-4 !size"}}, 2019, {"--Error2019: PopulationSize=-4 out of range [1:]!"}},
      {"BIP", &kBip, {{"2 !traits", "two !traits"}}, 2020, {"--Error2020: cannot read Number of Traits (NumTraits)!"}},
      {"BIP", &kBip, {{"2 !traits", "-1 !traits"}}, 2021, {"--Error2021: Number of Traits=-1 out of range [0:]!"}},
      {"MET", &kMet, {{"2 !envs", "E !envs"}}, 2022, {"--Error2022: cannot read Number of Environments (NumEnvs)!"}},
      {"CSL", &kCsl, {{"1 !envs", "0 !envs"}}, 2023, {"--Error2023: Number of Environments=0 out of range [1:]!"}},
      {"CSL", &kCsl, {{"1 !reps", "r !reps"}}, 2024, {"--Error2024: cannot read Number of Replications (NumReps)!"}},
      {"CSL", &kCsl, {{"1 !reps", "0 !reps"}}, 2025, {"--Error2025: Number of Replications=0 out of range [1:]!"}},
      {"NAM", &kNam, {{"2 !families", "x !families"}}, 2026,
       {"--Error2026: cannot read Number of Families (NumFamilies)!"}},
      {"NAM", &kNam, {{"2 !families", "0 !families"}}, 2027, {"--Error2027: Number of Families=0 out of range [1:]!"}},
      // No marker stands on both maps: nothing joins them. The words are the catalogue's.
      {"CMP", &kCmp, {{"M2 MapB 0\nM3 MapB 4", "M8 MapB 0\nM9 MapB 4"}}, 2032,
       {"--Error2032: Type I error rate of permutation test out of range (0,0.5)!"}},
      // Chromosomes and maps.
      {"SDL", &kSdl, {{"Chr2 2", "Chr2 two"}}, 2101,
       {"--Error2101: cannot read chrom name and number of markers! ChromID=2"}},
      {"SDL", &kSdl, {{"Chr2 2", "Chr2 0"}}, 2102, {"--Error2102: NumMarkers=0 out of range [1:]! ChromID=2"}},
      {"SDL", &kSdl, {{"M2 1 10.5", "M2 1 ten"}}, 2103,
       {"--Error2103: cannot read marker name and position! ChromID=1 MarkerID=2"}},
      {"SDL", &kSdl, {{"M4 2 20.0", "M4 3 20.0"}}, 2104,
       {"--Error2104: ChromID of the marker out of range! ChromID=2 MarkerID=2"}},
      {"SDL", &kSdl, {{"2 !space", "1 !space"}, {"M2 1 10.5", "M2 1 -"}}, 2105,
       {"--Error2105: cannot read marker name and interval! ChromID=1 MarkerID=2"}},
      {"SDL", &kSdl, {{"2 !space", "1 !space"}, {"M3 Chr2", "M3 Chr1"}}, 2106,
       {"--Error2106: ChromID of the marker out of range! ChromID=2 MarkerID=1"}},
      {"SDL", &kSdl, {{"M2 1 10.5", "M2 1 -1.0"}}, 2107,
       {"--Error2107: the marker order is not correct! ChromID=1 MarkerID=1"}},
      {"SDL", &kSdl, {{"M3 Chr2 0.0", "M1 Chr2 0.0"}}, 2108,
       {"--Error2108: two markers have same name! ChromID1=2 MarkerID1=1; ChromID2=1 MarkerID2=1 "
        "MarkerName=M1"}},
      {"SDL", &kSdl, {{"M4 2 20.0", "M3 2 20.0"}}, 2109,
       {"--Error2109: two markers have same name! ChromID1=2 MarkerID1=2; ChromID2=2 MarkerID2=1 "
        "MarkerName=M3"}},
      // Marker rows.
      {"SDL", &kSdl, {{"M4 X H B A", "M4 X H"}}, 2201, {"--Error2201: cannot read MarkerType! MarkerID=4"}},
      {"SDL", &kSdl, {{"M2 A H B H", "M2 A Q B H"}}, 2202,
       {"--Error2202: Invalid MarkerType! MarkerID=2 LineID=2 Input MarkerType=Q"}},
      {"SDL", &kSdl, {{"7 !pop", "1 !pop"}}, 2203,
       {"--Error2203: MarkerType out of range (A,H,D,X)! MarkerID=1 LineID=3 MarkerType=B"}},
      {"SDL", &kSdl, {{"7 !pop", "10 !pop"}}, 2204,
       {"--Error2204: MarkerType out of range (H,B,R,X)! MarkerID=1 LineID=1 MarkerType=A"}},
      {"BIP", &kBip, {{"7 !pop", "4 !pop"}, {"M1 A H B A", "M1 A 12 B A"}}, 2205,
       {"--Error2205: MarkerType out of range (A,H,B,X)! MarkerID=1 LineID=2 MarkerType=D"}},
      {"SDL", &kSdl, {{"M4 X H B A", "M4 X XX -1 **"}}, 2209,
       {"--Error2209: impossible MarkerCategory! MarkerID=4 MarkerCategory="}},
      {"CSL", &kCsl, {{"M1 2 0 2 0", "M1 2 0 1 0"}}, 2210, {"--Error2210: cannot read MarkerType! MarkerID=1"}},
      {"CSL", &kCsl, {{"M2 2 2 0 -1", "M2 2 D A -1"}}, 2211,
       {"--Error2211: Invalid MarkerType! MarkerID=2 LineID=0 Input MarkerType="}},
      {"NAM", &kNam, {{"M2 A B B AB", "M2 A B B BA"}}, 2212,
       {"--Error2212: Invalid MarkerType! MarkerID=2 LineID=4 Input MarkerType=BA"}},
      {"CDQ", &kCdq, {{"ABCD M1", "A=CB=D M1"}}, 2213,
       {"--Error2213: MarkerCategory out of range (ABCD,A=B,C=D,A=CB=D,A=DB=C)! MarkerID=1 "
        "Input Category=A=CB=D"}},
      {"CDQ", &kCdq, {{"1 !pop", "2 !pop"}, {"ABCD M1", "AB=CD M1"}}, 2214,
       {"--Error2214: MarkerCategory out of range (ABCD,A=B,C=D,AB=CD)! MarkerID=1 Input "
        "Category=AB=CD"}},
      {"CDQ", &kCdq, {{"XD XX XC", "XD CX XC"}}, 2215,
       {"--Error2215: Invalid MarkerType! MarkerID=2 LineID=3 Input MarkerType=CX"}},
      {"CDQ", &kCdq, {{"AC AD BC BD", "AC AD XC BD"}}, 2216,
       {"--Error2216: Invalid MarkerType! MarkerID=1 Input MarkerType=XC"}},
      {"CDQ", &kCdq, {{"AC AD BC BD", "AC XX AC AC"}}, 2217,
       {"--Error2217: Invalid MarkerType in Category ABCD! MarkerID=1"}},
      {"CDQ", &kCdq, {{"XC XD XX XC", "XC XD AC XC"}}, 2218, {"--Error2218: non-polymorhism marker! MarkerID=2"}},
      {"CDQ", &kCdq, {{"XC XD XX XC", "XD XD XX XD"}}, 2219,
       {"--Error2219: Invalid MarkerType in Category A=B! MarkerID=2"}},
      {"CDQ", &kCdq, {{"A=B M2 XC XD XX XC", "C=D M2 AX BX XC AX"}}, 2220,
       {"--Error2220: non-polymorhism marker! MarkerID=2"}},
      {"CDQ", &kCdq, {{"A=B M2 XC XD XX XC", "C=D M2 BX BX XX BX"}}, 2221,
       {"--Error2221: Invalid MarkerType in Category C=D! MarkerID=2"}},
      {"CDQ", &kCdq, {{"A=B M2 XC XD XX XC", "AB=CD M2 AA AB BD BB"}}, 2222,
       {"--Error2222: non-polymorhism marker! MarkerID=2"}},
      {"CDQ", &kCdq, {{"1 !pop", "2 !pop"}, {"A=B M2 XC XD XX XC", "A=DB=C M2 AB AB XX AB"}}, 2223,
       {"--Error2223: Invalid MarkerType in Category (AB=CD,A=CB=D,A=DB=C)! MarkerID=2"}},
      {"PLQ", &kPlq, {{"ABAB M2", "AAAA M2"}}, 2224, {"--Error2224: non-polymorhism marker! MarkerID=2"}},
      {"PLQ", &kPlq, {{"2 !pop", "3 !pop"}, {"ABCD M1", "AAAAAAAA M1"}}, 2225,
       {"--Error2225: Invalid MarkerCategory (PopType=1, 2)! MarkerID=1 Input MarkerCategory=AAAAAAAA"}},
      {"PLQ", &kPlq, {{"ABCD M1", "BACD M1"}}, 2226,
       {"--Error2226: Invalid MarkerCategory (PopType=3, 4)! MarkerID=1 Input MarkerCategory=BACD"}},
      {"PLQ", &kPlq, {{"ABCD M1", "ABCE M1"}}, 2227,
       {"--Error2227: Invalid MarkerCategory! MarkerID=1 ParentID=4 Input MarkerCategory=ABCE"}},
      {"PLQ", &kPlq, {{"M1 A B C D", "M1 A B E D"}}, 2228, {"--Error2228: Invalid MarkerType! MarkerID=1"}},
      // ABAB folds C to A and D to B: a line set of A and C alone shows one allele.
      {"PLQ", &kPlq, {{"M2 A B C X", "M2 A C C X"}}, 2229,
       {"--Error2229: non-polymorphism marker! MarkerID=2 ParentID=1"}},
      {"SDL", &kSdl, {{"M4 X H B A", "M1 X H B A"}}, 2230,
       {"--Error2230: two markers have same name! MarkerID1=4 MarkerID2=1 MarkerName=M1"}},
      {"SDL", &kSdl, {{"M3 B B A H", "M5 B B A H"}}, 2501,
       {"--Error2501: Different marker names on chromosome and markertype!",
        "  Marker name in Chromosome=M3 ChID=2 MarkerID=1", "  Marker name in Markertype=M5 MarkerID=3"}},
      // Phenotypes.
      {"BIP", &kBip, {{"Yield 1.0 2.0 3.0 4.0\nHeight 10 11 12 13", "Yield 1.0 2.0\n\n"}}, 2401,
       {"--Error2401: cannot read Trait(Env)Name and Phenotype! Trait(Env)ID=1"}},
      {"MET", &kMet, {{"E1 1.0 2.0 3.0", "E1 1.0 2.0 N/A"}}, 2402,
       {"--Error2407: Individual or line = 3; invalid phenotype = N/A",
        "--Error2402: Invalid phenotype found! Trait(Env)ID=1 Trait(Env)Name=E1"}},
      {"AOV", &kAov, {{"E1 G2 1 6.0", "E1 G2 1"}}, 2403, {"--Error2403: cannot read Env, Gtp, Blk, Phenotype! RowID=2"}},
      {"AOV", &kAov, {{"E1 G2 1 6.0", "E1 G2 1 Na"}}, 2404,
       {"--Error2407: Individual or line = 1; invalid phenotype = Na", "--Error2404: Invalid phenotype found! RowID=2"}},
      {"CSL", &kCsl, {{"Yield 1 2 3 4", "Yield 1 2 3"}}, 2405,
       {"--Error2405: cannot read TraitName and Phenotype! TraitID=1"}},
      {"CSL", &kCsl, {{"Yield 1 2 3 4", "Yield 1 2,3 x"}}, 2406,
       {"--Error2407: Individual or line = 4; invalid phenotype = x",
        "--Error2406: Invalid phenotype found! TraitID=1 TraitName=Yield"}},
      // The trial table of the analysis of variance.
      {"AOV", &kAov, {{"3 !rows", "three !rows"}}, 3301, {"--Error3301: cannot read Number of Rows in the input file!"}},
      {"AOV", &kAov, {{"3 !rows", "1 !rows"}}, 3302,
       {"--Error3302: Number of Rows (incl. title) cannot be less than 2! NumRows=1"}},
      {"AOV", &kAov, {{"4 !cols", "! cols"}}, 3303, {"--Error3303: cannot read Number of Columns in the input file!"}},
      {"AOV", &kAov, {{"4 !cols", "3 !cols"}}, 3304,
       {"--Error3304: Number of Columns cannot be less than 4! NumCols=3"}},
      {"AOV", &kAov, {{"Env Gtp Blk Yield\nE1 G1 1 5.0\nE1 G2 1 6.0\n", "Env Gtp\n"}}, 3305,
       {"--Error3305: cannot read title line (inlc. trait name) in the input file!"}},
      // Family rows of the nested association file.
      {"NAM", &kNam, {{"F2 2", "F2 two"}}, 3506,
       {"--Input error 3506: cannot read family name, and family size!", "  FamliyID =2"}},
      {"NAM", &kNam, {{"F2 2", "F2 0"}}, 3517,
       {"--Input error 3517: family size out of range!", "  FamilyID, Family Size =2 0"}},
  };
  return corpus;
}

class BadInputs : public testing::InTempDir {};

TEST_F(BadInputs, EachCodeComesBackWithItsLinesInTheLogAndOnTheOutput) {
  for (const BadInput& c : Corpus()) {
    const std::string tool = c.tool;
    const std::string text = Edit(*c.base, c.edits);
    testing::WriteText("case.txt", text);
    std::string out;
    const int status = CheckByTool(tool, "case.txt", &out);
    std::vector<std::string> expected = c.lines;
    expected.push_back("--Error1101: error found in DLL! DLL name=" + Entry(tool));
    EXPECT_EQ(status, c.status) << tool << "\n" << text;
    EXPECT_EQ(testing::ReadLines(tool + ".log"), expected) << tool << "\n" << text;
    std::string joined;
    for (const std::string& line : expected) joined += line + "\n";
    EXPECT_EQ(out, joined) << tool << "\n" << text;
    std::remove((tool + ".log").c_str());
  }
}

TEST_F(BadInputs, TheBaseFilesPassAndAMissingFileIsReportedNotFatal) {
  const std::pair<const char*, const std::string*> bases[] = {
      {"BIP", &kBip}, {"SDL", &kSdl}, {"MET", &kMet}, {"NAM", &kNam}, {"PLQ", &kPlq},
      {"CDQ", &kCdq}, {"CSL", &kCsl}, {"AOV", &kAov}, {"CMP", &kCmp}};
  for (const auto& [tool, text] : bases) {
    testing::WriteText("base.txt", *text);
    EXPECT_EQ(CheckByTool(tool, "base.txt"), 0) << tool;
    EXPECT_EQ(CheckByTool(tool, "absent.txt   "), 1002) << tool;
    const std::vector<std::string> log = testing::ReadLines(std::string(tool) + ".log");
    ASSERT_GE(log.size(), 3u) << tool;  // the outlier report's headings may come first
    EXPECT_THAT(std::vector<std::string>(log.end() - 3, log.end()),
                ::testing::ElementsAre(Entry(tool) + " run successfully!",
                                       "absent.txt does not exist, and the program stops!",
                                       "--Error1101: error found in DLL! DLL name=" + Entry(tool)));
  }
}

}  // namespace
}  // namespace gae
