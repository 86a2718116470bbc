// The frame that every map tool shares, written once over the tools: the order of a whole run's
// log, what a stop leaves behind, the output's refusal of arrays that do not describe the file,
// and the written input files read back by their validators.
//
// A tool adds one row to kTools (see MapRow): its example file, its exports, two bad files with
// the codes and first lines they stop with, the shape of a clean run's log, a file every output
// writes and the input files its run writes.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "frame/cdm_tool_policy.h"
#include "frame/cmp_tool_policy.h"
#include "frame/map_tool_driver.h"
#include "frame/map_tool_policy.h"
#include "frame/plm_tool_policy.h"
#include "frame/process_state.h"
#include "frame/tool_profile.h"
#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::CallOnPath;
using testing::FileExists;
using testing::ReadLines;
using testing::WriteText;

// A written file and the validator that must read it back with `code`. A null `check` means the
// tool's own check of its input (ToolRow::check_input).
struct Reread {
  const char* suffix;
  testing::PathExport check;
  int code;
};

struct ToolRow {
  MapTool tool;
  testing::PathExport all_by_default;
  std::unique_ptr<MapToolPolicy> (*output_policy)();  // the policy the output export makes
  int (*check_input)(const std::string& path);        // FindNumMarkers, then CheckError
  const char* example;           // under examples/: maps cleanly
  const char* bad_header;        // stops in the size read, with this code and first log line
  int bad_header_code;
  const char* bad_header_line;
  const char* bad_body;          // stops after its sizes were read; null when the size read
                                 // already reads the whole file
  int bad_body_code;
  const char* bad_body_line;
  const char* log_trace;         // a clean run's log, one letter a line (see the first test)
  const char* result_suffix;     // a file every output writes
  std::vector<Reread> rereads;   // the input files a whole run writes
};

// --- MAP ---------------------------------------------------------------------------------------

ToolRow MapRow() {
  return {
      .tool = MapTool::kMAP,
      .all_by_default = MAPAllByDefault,
      .output_policy = [] { return std::unique_ptr<MapToolPolicy>(new MapPolicy()); },
      .check_input = [](const std::string& path) { return testing::CheckMapFile(path); },
      .example = "f2_five_chromosomes.map",
      .bad_header = "21\n1\n1\n2\n3\n",
      .bad_header_code = 2004,
      .bad_header_line = "--Error2004: PopulationType=21 out of range [1:20]!",
      .bad_body = "7\n1\n1\n2\n3\nM1 A H Q\nM2 A H B\nM1 0\nM2 0\n",
      .bad_body_code = 2202,
      .bad_body_line = "--Error2202: Invalid MarkerType! MarkerID=1 LineID=3 Input MarkerType=Q",
      .log_trace = "FTP" "GGTT" "OTOTOTOTOTT" "RTRTRTRTRTT" "TE",  // five chromosomes
      .result_suffix = ".sum",
      // The .met frame carries 0 environments until its user adds them, which its validator
      // refuses (map_run_test completes one).
      .rereads = {{"EC.map", nullptr, 0}, {".sdl", CheckErrorSDL, 0}, {".bip", CheckErrorBIP, 0},
                  {".met", CheckErrorMET, 2023}},
  };
}

// --- CDM ---------------------------------------------------------------------------------------

ToolRow CdmRow() {
  return {
      .tool = MapTool::kCDM,
      .all_by_default = CDMAllByDefault,
      .output_policy = [] { return std::unique_ptr<MapToolPolicy>(new CdmPolicy()); },
      .check_input = [](const std::string& path) { return testing::CheckCdmFile(path).status; },
      .example = "clonal_f1.cdm",
      .bad_header = "3\n1\n1\n2\n3\n",
      .bad_header_code = 2006,
      .bad_header_line = "--Error2006: PopulationType=3 out of range [1:2]!",
      .bad_body = "1\n1\n1\n2\n3\nABCD M1 AC AD QQ\nABCD M2 AC AD BC\nM1 0\nM2 0\n",
      .bad_body_code = 2215,
      .bad_body_line = "--Error2215: Invalid MarkerType! MarkerID=1 LineID=3 Input MarkerType=QQ",
      .log_trace = "FTP" "GGTT" "OTT" "RTT" "TE",  // one chromosome
      .result_suffix = ".sum",
      .rereads = {{"EC.cdm", nullptr, 0}, {".cdq", CheckErrorCDQ, 0}},
  };
}
// --- PLM ---------------------------------------------------------------------------------------

ToolRow PlmRow() {
  return {
      .tool = MapTool::kPLM,
      .all_by_default = PLMAllByDefault,
      .output_policy = [] { return std::unique_ptr<MapToolPolicy>(new PlmPolicy()); },
      .check_input = [](const std::string& path) { return testing::CheckPlmFile(path); },
      .example = "four_way_ril.plm",
      .bad_header = "5\n1\n1\n2\n6\n",
      .bad_header_code = 2007,
      .bad_header_line = "--Error2007: PopulationType=5 out of range [1:4]!",
      .bad_body = "2\n1\n1\n2\n6\nABCD M1 A B C E A B\nABCD M2 A B C D A B\nM1 0\nM2 0\n",
      .bad_body_code = 2228,
      .bad_body_line = "--Error2228: Invalid MarkerType! MarkerID=1",
      .log_trace = "FTP" "GGTT" "OTT" "RTT" "TE",  // one chromosome
      .result_suffix = ".sum",
      .rereads = {{"EC.plm", nullptr, 0}, {".plq", CheckErrorPLQ, 0}},
  };
}

// --- CMP ---------------------------------------------------------------------------------------

// The size read of a consensus file reads its whole map section, so nothing stops after it. The
// read has no time line and the pairs are no estimates (no P); nothing is written for other tools.
ToolRow CmpRow() {
  return {
      .tool = MapTool::kCMP,
      .all_by_default = CMPAllByDefault,
      .output_policy = [] { return std::unique_ptr<MapToolPolicy>(new CmpPolicy()); },
      .check_input = nullptr,
      .example = "three_maps_3b.cmp",
      .bad_header = "3\n1\n2\nA 1\nB 1\nm1 A 0\nm1 B 0\n",
      .bad_header_code = 2011,
      .bad_header_line = "--Error2011: Marker SpaceType=3 out of range [1:2]!",
      .bad_body = nullptr,
      .bad_body_code = 0,
      .bad_body_line = nullptr,
      .log_trace = "F" "GGTT" "OTT" "RTTT" "E",  // one group of all markers
      .result_suffix = ".sum",
      .rereads = {},
  };
}

const ToolRow kTools[] = {MapRow(), CdmRow(), PlmRow(), CmpRow()};

void PrintTo(const ToolRow& row, std::ostream* os) { *os << ProfileOf(row.tool).letters; }

// -----------------------------------------------------------------------------------------------

class MapToolFrame : public testing::InTempDir, public ::testing::WithParamInterface<ToolRow> {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    WriteText(Row().example, testing::ReadText(testing::SourcePath(std::string("examples/") + Row().example)));
  }
  const ToolRow& Row() const { return GetParam(); }
  const ToolProfile& Profile() const { return ProfileOf(Row().tool); }
  std::string Log() const { return std::string(Profile().letters) + ".log"; }
  std::string Stem() const {
    const std::string example = Row().example;
    return example.substr(0, example.rfind('.'));
  }
  // A file named like the example, so that the tool reads it under the same rules.
  std::string Bad(const char* text) const {
    const std::string example = Row().example;
    const std::string name = "bad" + example.substr(example.rfind('.'));
    WriteText(name, text);
    return name;
  }
  int Run(const std::string& path) const { return CallOnPath(Row().all_by_default, path); }
  std::string Failed(std::string_view dll) const {
    return "--Error1101: error found in DLL! DLL name=" + std::string(dll);
  }
};

TEST_P(MapToolFrame, TheLogTellsTheStagesInTheirOrder) {
  ASSERT_EQ(Run(Row().example), 0);
  // One letter a line: F and E the first and last entry lines, T a time line, P the start of the
  // pair estimates, G the grouping lines, O and R a group being ordered and rippled; the other
  // pairwise lines and the per-start lines left out.
  const std::string first = std::string(Profile().find_num_markers_name) + " run successfully!";
  const std::string last = std::string(Profile().all_by_default_name) + " run successfully!";
  std::string trace;
  for (const std::string& line : ReadLines(Log())) {
    if (line == first) trace += 'F';
    else if (line == last) trace += 'E';
    else if (line.rfind("   CPU time taken: ", 0) == 0) trace += 'T';
    else if (line == "Calculating pair-wise recombination frequency...") trace += 'P';
    else if (line.rfind("  Grouping ", 0) == 0) trace += 'G';
    else if (line.rfind("  Ordering is running! GroupID=", 0) == 0) trace += 'O';
    else if (line.rfind("  Rippling is running! GroupID=", 0) == 0) trace += 'R';
  }
  EXPECT_EQ(trace, Row().log_trace);
  EXPECT_EQ(Process().map.map_state, -1);  // released at the end
}

TEST_P(MapToolFrame, AStopBeforeTheSizesAllocatesNothing) {
  ASSERT_EQ(Run(Bad(Row().bad_header)), Row().bad_header_code);
  const std::vector<std::string> log = ReadLines(Log());
  // The cause, the size read's 1101, the run's 1101.
  EXPECT_EQ(log, (std::vector<std::string>{Row().bad_header_line, Failed(Profile().find_num_markers_name),
                                           Failed(Profile().all_by_default_name)}));
  EXPECT_EQ(Process().map.map_state, -1);
  EXPECT_FALSE(FileExists("bad" + std::string(Row().result_suffix)));
  // A missing file stops the same way, with its own line; the log grows.
  EXPECT_EQ(Run("absent.txt  "), 1002);
  const std::vector<std::string> missing = ReadLines(Log());
  ASSERT_EQ(missing.size(), 6u);
  EXPECT_EQ(std::vector<std::string>(missing.begin() + 3, missing.end()),
            (std::vector<std::string>{"absent.txt does not exist, and the program stops!",
                                      Failed(Profile().find_num_markers_name), Failed(Profile().all_by_default_name)}));
  EXPECT_EQ(Process().map.map_state, -1);
}

TEST_P(MapToolFrame, AStopAfterTheSizesLeavesTheStateForTheNextRunToFree) {
  if (Row().bad_body == nullptr) GTEST_SKIP() << "the size read reads the whole file";
  ASSERT_EQ(Run(Bad(Row().bad_body)), Row().bad_body_code);
  const std::vector<std::string> log = ReadLines(Log());
  ASSERT_EQ(log.size(), 3u);  // the size read, the cause, the run's 1101: no time line of the read
  EXPECT_EQ(log[1], Row().bad_body_line);
  EXPECT_EQ(log.back(), Failed(Profile().all_by_default_name));
  EXPECT_EQ(Process().map.map_state, 0);
  EXPECT_FALSE(FileExists("bad.LRD"));
  ASSERT_EQ(Run(Row().example), 0);
  EXPECT_EQ(Process().map.map_state, -1);
}

TEST_P(MapToolFrame, OutputRefusesArraysThatDoNotDescribeTheFile) {
  ASSERT_EQ(Run(Row().example), 0);  // leaves the pairwise file the output reads
  const std::string result = Stem() + Row().result_suffix;
  ASSERT_EQ(std::remove(result.c_str()), 0);
  const std::string path = Row().example;
  int n = 0, space_type = 0, space_unit = 0, num_chs = 0, status = -1;
  ::testing::internal::CaptureStdout();
  FindNumMarkersBody(Profile(), static_cast<int>(path.size()), path.data(),
                     {&space_type, &space_unit, &num_chs, &n}, &status);
  ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(status, 0);
  ASSERT_GT(n, 2);
  // One chromosome holding every marker, the map a consistent output is given.
  std::vector<int> anchor(n + 1, 1), size{n}, order(n + 1), name(19, ' ');
  std::vector<float> position(n + 1, 0.0f);
  std::iota(order.begin(), order.end(), 1);
  std::iota(position.begin(), position.end(), 0.0f);
  const FinishedMap good{n, anchor.data(), n, 0, 1, name.data(), size.data(), order.data(), position.data()};
  struct Case {
    const char* why;
    FinishedMap map;
  };
  std::vector<int> short_size{n - 1}, bad_order(order);
  bad_order[1] = n + 1;
  // Wild counts beside short arrays must not be read (or copied) past them.
  std::vector<Case> cases = {
      {"another file's marker count", good}, {"chromosomes holding fewer than the mapped", good},
      {"more mapped and unlinked than markers", good}, {"a marker number out of range", good},
      {"mapped beyond every count", good},   {"unlinked beyond every count", good},
      {"chromosomes beyond every count", good}, {"no positions", good}};
  cases[0].map.num_markers = n + 1;
  cases[1].map.group_size = short_size.data();
  cases[2].map.num_unlinked = 1;
  cases[3].map.order = bad_order.data();
  cases[4].map.num_mapped = INT_MAX;
  cases[5].map.num_unlinked = INT_MAX;
  cases[6].map.num_groups = INT_MAX;
  cases[7].map.position = nullptr;
  const OutputSwitches all = OutputSwitches::AllOn(Profile().output_switches);
  for (const Case& c : cases) {
    ::testing::internal::CaptureStdout();
    OutputBody(*Row().output_policy(), static_cast<int>(path.size()), path.data(), c.map, all);
    const std::string out = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, Failed(Profile().output_name) + "\n") << c.why;
    EXPECT_FALSE(FileExists(result)) << c.why;
  }
  ::testing::internal::CaptureStdout();
  OutputBody(*Row().output_policy(), static_cast<int>(path.size()), path.data(), good, all);
  ::testing::internal::GetCapturedStdout();
  EXPECT_TRUE(FileExists(result));
}

TEST_P(MapToolFrame, WrittenInputFilesAreReadBackByTheirValidators) {
  ASSERT_EQ(Run(Row().example), 0);
  for (const Reread& file : Row().rereads) {
    const std::string path = Stem() + file.suffix;
    ASSERT_TRUE(FileExists(path)) << path;
    const int status = file.check != nullptr ? CallOnPath(file.check, path) : Row().check_input(path);
    EXPECT_EQ(status, file.code) << path;
  }
}

INSTANTIATE_TEST_SUITE_P(Tools, MapToolFrame, ::testing::ValuesIn(kTools),
                         [](const ::testing::TestParamInfo<ToolRow>& info) {
                           return std::string(ProfileOf(info.param.tool).letters);
                         });

}  // namespace
}  // namespace gae
