// Files that would make a wrong map without a word, and a folder the command shares: each ends in
// exit 1 with a message that names the problem and the fix, and no map; R/qtl files in every
// layout a spreadsheet saves them in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstdio>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "input/tool_codes.h"
#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/rqtl_cross.h"
#include "support/temp_dir.h"
#include "vocabulary/message_code.h"

namespace gae {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using testing::BredCross;
using testing::BreedCross;
using testing::CommandRun;
using testing::ExpectHasAll;
using testing::FileExists;
using testing::Gaengine;
using testing::GaengineErrApart;
using testing::ReadText;
using testing::RqtlText;
using testing::WriteText;

class TrustChecks : public testing::InTempDir {};

// A small MAP file in F2 letters: its header's population size, the rows as given.
std::string MapText(int population_size, const std::vector<std::string>& rows) {
  std::string text = "7\n1\n1\n" + std::to_string(rows.size()) + "\n" + std::to_string(population_size) + "\n";
  for (const std::string& row : rows) text += row + "\n";
  for (const std::string& row : rows) text += row.substr(0, row.find(' ')) + " 0\n";
  return text;
}

// The F2 cross with marker `m` of chromosome 2 listed under chromosome 1 in its csv.
std::string MisplacedCsv() {
  BredCross cross = BreedCross(7, 2, 8, 150, 21);
  cross.chromosomes[10] = "1";
  return RqtlText(cross);
}

// The F2 cross with the alleles of its fourth marker scored the other way round.
BredCross Switched() {
  BredCross cross = BreedCross(7, 1, 8, 150, 31);
  for (char& c : cross.letters[3]) c = c == 'A' ? 'B' : c == 'B' ? 'A' : c;
  return cross;
}

TEST_F(TrustChecks, BadInputsEndInExitOneWithTheProblemAndTheFix) {
  struct Case {
    const char* what;
    std::function<void()> write;
    const char* arguments;
    int exit_code;
    std::vector<const char*> words;  // on standard error
    const char* absent;              // a file that must not be there afterwards
  };
  const std::vector<Case> cases = {
      {"an F2 imported as a RIL", [] { WriteText("f2.csv", RqtlText(BreedCross(7, 2, 8, 150, 1))); },
       "import rqtl f2.csv --pop 4 -o f2.map", 1,
       {"% of calls are H, which a RIL cannot show; an F2 fits 100% of the markers: --pop 7?", "--force"}, "f2.map"},
      {"a backcross imported as an F2", [] { WriteText("bc.csv", RqtlText(BreedCross(1, 2, 8, 150, 2))); },
       "import rqtl bc.csv --pop f2 -o bc.map", 1, {"segregation of an F2", "a P1BC1F1 fits", "--pop 1?"}, "bc.map"},
      {"a RIL written as an F2 MAP file",
       [] {
         const BredCross c = BreedCross(4, 1, 8, 100, 3);
         std::vector<std::string> rows = c.names;
         for (std::size_t m = 0; m < c.names.size(); ++m)
           for (const char letter : c.letters[m]) rows[m] += std::string(" ") + letter;
         WriteText("ril.map", MapText(100, rows));
       },
       "map ril.map", 1, {"ril.map: ", "of the markers reject the 1:2:1 segregation of an F2", "population type 3 or 4?"},
       "ril.sum"},
      {"a row one genotype longer than the header",
       [] { WriteText("long.map", MapText(5, {"M1 A H B A H B", "M2 A A B B H", "M3 B H A A H"})); }, "map long.map", 1,
       {"long.map line 6, marker M1: 6 genotypes, but the header says 5 individuals", "population size"}, "long.sum"},
      {"a marker with no call", [] { WriteText("gap.map", MapText(6, {"M1 A H B A H B", "M2 X X X X X X", "M3 B H A A H B"})); },
       "map gap.map", 1, {"marker M2 (number 2) cannot be read as an F2: all its calls are missing", "--drop-bad-markers"},
       "gap.sum"},
      {"a marker mixing dominant and co-dominant calls",
       [] { WriteText("mix.csv", "id,M1,M2,M3\n,1,1,1\n1,A,D,A\n2,H,A,B\n3,B,A,H\n4,A,B,B\n"); },
       "import rqtl mix.csv --pop f2", 1, {"M2: it mixes A, B and D, which an F2 cannot score in one marker", "--drop-bad-markers"},
       "mix.map"},
      {"an R/qtl cross type with no population type here", [] { WriteText("x.csv", "id,M1\n,1\n1,A\n"); },
       "import rqtl x.csv --pop risib", 2, {"R/qtl's risib", "bc (1), f2 (7), dh (3) and riself (4)", "7 F2"}, "x.map"},
      {"an R/qtl file given to map", [] { WriteText("cross.csv", RqtlText(BreedCross(7, 1, 4, 20, 4))); }, "map cross.csv", 1,
       {"cross.csv: a csv file", "gaengine import rqtl cross.csv --pop TYPE"}, "cross.sum"},
      {"a marker anchored to the wrong chromosome",
       [] {
         WriteText("moved.csv", MisplacedCsv());
         GaengineErrApart("import rqtl moved.csv --pop f2 --anchors -o moved.map");
       },
       "map moved.map", 1, {"marker C2M3 is anchored to group 1, but links to group 2 (LOD", "import without --anchors"},
       "moved.sum"},
      {"switched alleles",
       [] {
         WriteText("sw.csv", RqtlText(Switched()));
         GaengineErrApart("import rqtl sw.csv --pop f2 -o sw.map");
       },
       "map sw.map", 1, {"alleles look switched in C1M4 (", "--switch-alleles C1M4"}, "sw.sum"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    c.write();
    const CommandRun r = GaengineErrApart(c.arguments);
    EXPECT_EQ(r.exit_code, c.exit_code) << r.err << r.out;
    for (const char* words : c.words) EXPECT_THAT(r.err, HasSubstr(words));
    EXPECT_FALSE(FileExists(c.absent));
  }
}

TEST_F(TrustChecks, TheFixesTheMessagesNameMapTheData) {
  WriteText("sw.csv", RqtlText(Switched()));
  ASSERT_EQ(GaengineErrApart("import rqtl sw.csv --pop f2 -o sw.map").exit_code, 0);
  ASSERT_EQ(GaengineErrApart("map sw.map").exit_code, 1);
  // The pair file stands now and is reused: the switched marker is named all the same.
  CommandRun r = GaengineErrApart("map sw.map");
  EXPECT_THAT(r.err, HasSubstr("alleles look switched in C1M4"));
  r = GaengineErrApart("map --switch-alleles C1M4 sw.map");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_TRUE(FileExists("sw_sw.sum"));
  r = GaengineErrApart("import rqtl sw.csv --pop f2 --switch-alleles C1M4 -o fixed.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_EQ(GaengineErrApart("map fixed.map").exit_code, 0);
  WriteText("mix.csv", "id,M1,M2,M3,M4\n,1,1,1,1\n1,A,D,A,-\n2,H,A,B,-\n3,B,A,H,-\n4,A,B,B,-\n5,H,H,A,-\n");
  r = GaengineErrApart("import rqtl mix.csv --pop f2 --drop-bad-markers -o mix.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  ExpectHasAll(r.out, {"dropped 2 markers the MAP reader refuses: M2 M4", "2 markers, 5 individuals"});
}

TEST_F(TrustChecks, ADistortedMarkerIsListedAndForceMapsAWrongDesignWithAWord) {
  BredCross cross = BreedCross(7, 1, 8, 150, 61);
  std::replace(cross.letters[2].begin(), cross.letters[2].end(), 'B', 'A');  // selection against P2
  WriteText("skew.csv", RqtlText(cross));
  ASSERT_EQ(GaengineErrApart("import rqtl skew.csv --pop f2 -o skew.map").exit_code, 0);
  // A marker this distorted reads as switched beside its neighbours too: mapped as it is.
  CommandRun r = GaengineErrApart("map --force --seed 1 skew.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("  Distorted         1 (reject the 1:2:1 of an F2, p < 0.001): C1M3\n"));
  WriteText("f2.csv", RqtlText(BreedCross(7, 1, 8, 150, 62)));
  ASSERT_EQ(GaengineErrApart("import rqtl f2.csv --pop 4 --force -o ril.map").exit_code, 0);
  EXPECT_EQ(GaengineErrApart("map ril.map").exit_code, 1);
  r = GaengineErrApart("map --force ril.map");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("  Design            mapped as declared (--force): "));
}

// Every layout of one cross writes the same MAP file, whose letters are the bred ones.
TEST_F(TrustChecks, EveryLayoutOfOneCrossWritesTheSameMapFile) {
  const BredCross cross = BreedCross(7, 2, 6, 60, 41);
  const std::string comma = RqtlText(cross);
  struct Layout {
    const char* name;
    std::string text;
    const char* said;
  };
  std::string trailing = comma;  // a spreadsheet's trailing column and line of separators
  for (std::size_t at = 0; (at = trailing.find('\n', at)) != std::string::npos; at += 2) trailing.insert(at, ",");
  trailing += std::string(cross.names.size() + 2, ',') + "\n";
  const std::vector<Layout> layouts = {{"comma", comma, "csv file, separated by commas"},
                                       {"semicolon", RqtlText(cross, ';'), "separated by semicolons"},
                                       {"tab", RqtlText(cross, '\t'), "separated by tabs"},
                                       {"csvr", RqtlText(cross, ',', true), "csvr (rotated) file"},
                                       {"trailing", trailing, "csv file"}};
  std::string first;
  for (const Layout& l : layouts) {
    SCOPED_TRACE(l.name);
    WriteText(std::string(l.name) + ".csv", l.text);
    const CommandRun r = GaengineErrApart("import rqtl " + std::string(l.name) + ".csv --pop F2 -o " + l.name + ".map");
    ASSERT_EQ(r.exit_code, 0) << r.err;
    ExpectHasAll(r.out, {l.said, "12 markers, 60 individuals"});
    const std::string written = ReadText(std::string(l.name) + ".map");
    if (first.empty()) first = written;
    EXPECT_EQ(written, first);
  }
  InputFile in;
  ASSERT_TRUE(in.Open("comma.map"));
  MapToolInput input;
  ReadMapToolInput(in, kMapToolCode, input);
  ASSERT_EQ(MessageCode(), 0);
  for (std::size_t m = 0; m < cross.letters.size(); ++m)
    EXPECT_EQ(std::string(input.markers.types.begin() + static_cast<std::ptrdiff_t>(m * 60),
                          input.markers.types.begin() + static_cast<std::ptrdiff_t>((m + 1) * 60)),
              cross.letters[m]);
}

TEST_F(TrustChecks, NamesChromosomesTraitsAndTheXChromosomeAreKept) {
  BredCross cross = BreedCross(7, 3, 6, 80, 51);
  for (std::size_t m = 0; m < cross.names.size(); ++m) cross.chromosomes[m] = m < 6 ? "1A" : m < 12 ? "1B" : "X";
  std::string csv = RqtlText(cross);
  csv.replace(csv.find("C1M2"), 4, "C1 M2");
  WriteText("cross.csv", csv);
  CommandRun r = GaengineErrApart("import rqtl cross.csv --pop f2 --genotypes A H B D C --anchors -o cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  ExpectHasAll(r.out, {"renamed: 'C1 M2' -> C1_M2", "chromosome X left out (6 markers)",
                       "anchors tie each marker to its chromosome's group"});
  EXPECT_THAT(ReadText("cross.loci.tsv"), HasSubstr("C1_M2\t1A\t12\n"));
  EXPECT_THAT(ReadText("cross.traits.tsv"), HasSubstr("id\tyield\nind1\t10.00\n"));
  r = GaengineErrApart("map --seed 5 cross.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, ContainsRegex("\n    1A +6 markers(.|\n)*\n    1B +6 markers"));
  EXPECT_THAT(r.out, HasSubstr("cross.bip (1 traits)"));
  // The filled QTL files pass their validators, and the trait row holds the values.
  EXPECT_EQ(GaengineErrApart("check BIP cross.bip").exit_code, 0);
  EXPECT_EQ(GaengineErrApart("check MET cross.met").exit_code, 0);
  EXPECT_THAT(ReadText("cross.bip"), HasSubstr("\nyield               10 10.25 10.5 10.75 11 "));
  r = GaengineErrApart("import rqtl cross.csv --pop f2 --keep-x -o withx.map");
  EXPECT_THAT(r.out, HasSubstr("18 markers"));
  // A file in R/qtl's own allele names is read by them.
  WriteText("named.csv", "id,M1,M2,M3\n,1,1,1\n1,BB,BA,AA\n2,BA,AA,BB\n3,AA,BB,BA\n4,BA,BA,BA\n5,BB,BA,AA\n6,BA,-,BA\n");
  r = GaengineErrApart("import rqtl named.csv --pop f2 -o named.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("--genotypes BB BA AA \"not AA\" \"not BB\""));
  EXPECT_THAT(ReadText("named.map"), HasSubstr("\nM1" + std::string(34, ' ') + "A H B H A H\n"));
  // --genotypes takes five codes and leaves the next option alone.
  EXPECT_EQ(GaengineErrApart("import rqtl cross.csv --pop f2 --genotypes A H B D C --keep-x -o g.map").exit_code, 0);
}

std::vector<int> Identity(int n) {
  std::vector<int> order(n);
  std::iota(order.begin(), order.end(), 0);
  return order;
}

// An F2 chromosome of `n` markers 3 cM apart.
std::string F2File(int n) {
  std::vector<testing::SimulatedMarker> markers;
  for (int k = 0; k < n; ++k) markers.push_back({std::string("F").append(std::to_string(k + 10)), 3.0 * k});
  return testing::MapInputFile(markers, testing::SimulateF2Chromosome(markers, 150, 0.02, 7), Identity(n), 150);
}

// A clonal F1 chromosome of `n` markers 4 cM apart, all of category ABCD.
std::string ClonalFile(int n) {
  std::vector<testing::SimulatedClonalMarker> markers;
  for (int k = 0; k < n; ++k) markers.push_back({std::string("K").append(std::to_string(k + 10)), 4.0 * k, 1, k % 3 == 0, k % 4 == 0});
  return testing::CdmInputFile(1, markers, testing::SimulateClonalChromosome(markers, 200, 0.02, 9), Identity(n));
}

// Two chromosomes of six four-way RIL markers.
std::string PureLineFile() {
  return testing::PlmInputFile(testing::SimulatePureLineData(2, 2, 6, 8.0, 120, {1234, 1214, 1233}, 0.02, 11));
}

// The first tool's pairs of the same stem must not become the second tool's: each map equals
// the one the second tool makes alone. 12 F2 markers give as many 8-byte records as 12 pure
// lines; 37 F2 markers fill 5,328 bytes, 190 clonal records of 28 bytes and 8 bytes more.
TEST_F(TrustChecks, AnotherToolsPairFileOfTheSameStemIsNeverUsed) {
  struct Case {
    int map_markers;
    std::string other_name, other_text;
  };
  for (const Case& c : {Case{12, "x.plm", PureLineFile()}, Case{37, "x.cdm", ClonalFile(20)}}) {
    SCOPED_TRACE(c.other_name);
    for (const char* folder : {"alone", "shared"}) {
      ::mkdir(folder, 0755);
      WriteText(std::string(folder) + "/" + c.other_name, c.other_text);
    }
    WriteText("shared/x.map", F2File(c.map_markers));
    ASSERT_EQ(Gaengine("--seed 3 map shared/x.map").exit_code, 0);
    ASSERT_EQ(Gaengine("--seed 3 map alone/" + c.other_name).exit_code, 0);
    const testing::CommandRun shared = Gaengine("--seed 3 map shared/" + c.other_name);
    ASSERT_EQ(shared.exit_code, 0) << shared.out;
    EXPECT_EQ(ReadText("shared/x.sum"), ReadText("alone/x.sum"));
    EXPECT_EQ(ReadText("shared/x.mtp"), ReadText("alone/x.mtp"));
    std::system("rm -rf alone shared");
  }
}

// Two runs on one pairwise file: the second waits for the first, or stops with --no-wait.
TEST_F(TrustChecks, ASecondRunOnThePairFileWaitsOrStops) {
  WriteText("x.map", F2File(30));
  const int lock = ::open("x.LRD.lock", O_RDWR | O_CREAT, 0644);
  ASSERT_EQ(::flock(lock, LOCK_EX), 0);  // a run holds the file
  const testing::CommandRun refused = GaengineErrApart("map --no-wait x.map");
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_THAT(refused.err, HasSubstr("another run is using x.LRD"));
  EXPECT_FALSE(FileExists("x.LRD"));
  const std::string command = std::string(GAE_BINARY_DIR) + "/gaengine map x.map 2>&1";
  std::FILE* waiting = ::popen(command.c_str(), "r");
  ASSERT_NE(waiting, nullptr);
  ::sleep(1);
  EXPECT_FALSE(FileExists("x.LRD"));  // nothing done while the other run holds the file
  ::flock(lock, LOCK_UN);
  ::close(lock);
  std::string out;
  char buffer[4096];
  while (std::fgets(buffer, sizeof buffer, waiting) != nullptr) out += buffer;
  const int status = ::pclose(waiting);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << out;
  EXPECT_THAT(out, HasSubstr("waiting for another run that is using x.LRD"));
  EXPECT_TRUE(FileExists("x.sum"));
}

// The bundled clonal example lies beside its own .cdq: a map run must not replace it.
TEST_F(TrustChecks, AFileTheCommandDidNotWriteIsNeverReplacedUnlessAsked) {
  WriteText("c.cdm", ReadText(testing::SourcePath("examples/clonal_f1.cdm")));
  const std::string traits = ReadText(testing::SourcePath("examples/clonal_f1_traits.cdq"));
  WriteText("c.cdq", traits);
  WriteText("elsewhere.txt", "kept\n");
  for (const char* name : {"c.hap", "c.map.tsv", "c.rf.png"}) ASSERT_EQ(::symlink("elsewhere.txt", name), 0);
  const testing::CommandRun refused = GaengineErrApart("map --tsv --plots c.cdm");
  EXPECT_EQ(refused.exit_code, 1);
  ExpectHasAll(refused.err, {"c.cdq: a result of c.cdm would replace this file", "c.hap:", "c.map.tsv:", "c.rf.png:"});
  EXPECT_EQ(ReadText("c.cdq"), traits);
  EXPECT_FALSE(FileExists("c.sum"));
  ASSERT_EQ(Gaengine("map --overwrite --tsv --plots c.cdm").exit_code, 0);
  EXPECT_EQ(ReadText("elsewhere.txt"), "kept\n");  // the links were replaced, not followed
  // Its own results, tables and pictures included, it may replace; an edited one it may not.
  EXPECT_EQ(Gaengine("map --tsv --plots c.cdm").exit_code, 0);
  EXPECT_EQ(Gaengine("plot c.cdm").exit_code, 0);
  WriteText("c.map.svg", "edited by hand\n");
  EXPECT_EQ(Gaengine("plot c.cdm").exit_code, 1);
  WriteText("c.err", "edited by hand\n");
  EXPECT_EQ(Gaengine("map c.cdm").exit_code, 1);
}

// The library keeps 256 characters of a stem: a longer one would put the results in a parent
// folder, under the folder's name.
TEST_F(TrustChecks, AStemTheLibraryWouldCutIsRefused) {
  const std::string parent(200, 'p'), folder = parent + "/" + std::string(60, 'd');
  ASSERT_EQ(::mkdir(parent.c_str(), 0755), 0);
  ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
  WriteText(folder + "/f2.map", F2File(10));
  const testing::CommandRun run = GaengineErrApart("map " + folder + "/f2.map");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.err, HasSubstr("result names keep only the first 256 characters"));
  EXPECT_FALSE(FileExists(folder + ".sum") || FileExists(folder + ".LRD"));
}

TEST_F(TrustChecks, AHeaderThatPromisesMoreThanTheFileHoldsIsRefusedBeforeAllocating) {
  WriteText("big.map", "7\n1\n1\n300000000\n10\nM1 A A A A A A A A A A\n");
  for (const char* arguments : {"map big.map", "pairs big.map", "groups big.map"}) {
    const testing::CommandRun run = GaengineErrApart(arguments);
    EXPECT_EQ(run.exit_code, 1) << arguments;
    EXPECT_THAT(run.err, HasSubstr("declares 300000000 markers")) << arguments;
  }
}

// Reports that a full disk cuts short end the run with status 1; the last good ones stay.
TEST_F(TrustChecks, AFullDiskEndsTheRunWithAnErrorAndKeepsTheLastReports) {
  WriteText("f2.map", ReadText(testing::SourcePath("examples/f2_five_chromosomes.map")));
  for (const std::string how : {"", "--front-end "}) {
    ASSERT_EQ(Gaengine("map --overwrite " + how + "f2.map").exit_code, 0) << how;
    const std::string sum = ReadText("f2.sum");
    ::remove("MAP.log");
    // Files of at most 16 blocks of 512 bytes: the pair file is reused, the reports do not fit.
    const std::string command = "sh -c 'ulimit -f 16; exec " + std::string(GAE_BINARY_DIR) + "/gaengine map " + how +
                                "f2.map' >out.txt 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << how << ReadText("out.txt");
    EXPECT_THAT(ReadText("out.txt"), HasSubstr("could not be written completely")) << how;
    EXPECT_EQ(ReadText("f2.sum"), sum) << how;
  }
  // The exports say which report they could not write in the tool's log.
  EXPECT_THAT(ReadText("MAP.log"), HasSubstr("--Error1101: error found in DLL! DLL name=f2.sum"));
}

}  // namespace
}  // namespace gae
