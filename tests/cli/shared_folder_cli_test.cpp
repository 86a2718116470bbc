// `gaengine map` in a folder it shares: with another tool's files of the same stem, a second
// run at once, a user's own files at result names, names the library would cut, headers that
// promise more than the file holds, and a disk that fills.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using testing::FileExists;
using testing::Gaengine;
using testing::GaengineErrApart;
using testing::ReadText;
using testing::WriteText;

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

class SharedFolder : public testing::InTempDir {};

// The first tool's pairs of the same stem must not become the second tool's: each map equals
// the one the second tool makes alone. 12 F2 markers give as many 8-byte records as 12 pure
// lines; 37 F2 markers fill 5,328 bytes, 190 clonal records of 28 bytes and 8 bytes more.
TEST_F(SharedFolder, AnotherToolsPairFileOfTheSameStemIsNeverUsed) {
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
TEST_F(SharedFolder, ASecondRunOnThePairFileWaitsOrStops) {
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
TEST_F(SharedFolder, AFileTheCommandDidNotWriteIsNeverReplacedUnlessAsked) {
  WriteText("c.cdm", ReadText(testing::SourcePath("examples/clonal_f1.cdm")));
  const std::string traits = ReadText(testing::SourcePath("examples/clonal_f1.cdq"));
  WriteText("c.cdq", traits);
  WriteText("elsewhere.txt", "kept\n");
  for (const char* name : {"c.hap", "c.map.tsv", "c.rf.png"}) ASSERT_EQ(::symlink("elsewhere.txt", name), 0);
  const testing::CommandRun refused = GaengineErrApart("map --tsv --plots c.cdm");
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_THAT(refused.err, HasSubstr("c.cdq: a result of c.cdm would replace this file"));
  for (const char* name : {"c.hap:", "c.map.tsv:", "c.rf.png:"}) EXPECT_THAT(refused.err, HasSubstr(name));
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
TEST_F(SharedFolder, AStemTheLibraryWouldCutIsRefused) {
  const std::string parent(200, 'p'), folder = parent + "/" + std::string(60, 'd');
  ASSERT_EQ(::mkdir(parent.c_str(), 0755), 0);
  ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
  WriteText(folder + "/f2.map", F2File(10));
  const testing::CommandRun run = GaengineErrApart("map " + folder + "/f2.map");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.err, HasSubstr("result names keep only the first 256 characters"));
  EXPECT_FALSE(FileExists(folder + ".sum"));
  EXPECT_FALSE(FileExists(folder + ".LRD"));
}

TEST_F(SharedFolder, AHeaderThatPromisesMoreThanTheFileHoldsIsRefusedBeforeAllocating) {
  WriteText("big.map", "7\n1\n1\n300000000\n10\nM1 A A A A A A A A A A\n");
  WriteText("big.gsp", ReadText(testing::SourcePath("examples/training_and_breeding.gsp")));
  const struct {
    const char* arguments;
  } cases[] = {{"map big.map"}, {"pairs big.map"}, {"groups big.map"}};
  for (const auto& c : cases) {
    const testing::CommandRun run = GaengineErrApart(c.arguments);
    EXPECT_EQ(run.exit_code, 1) << c.arguments;
    EXPECT_THAT(run.err, HasSubstr("declares 300000000 markers")) << c.arguments;
  }
}

// Reports that a full disk cuts short end the run with status 1; the last good ones stay.
TEST_F(SharedFolder, AFullDiskEndsTheRunWithAnErrorAndKeepsTheLastReports) {
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
