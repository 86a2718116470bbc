// A whole MAP run through the C exports, from an input file to the reports and back through
// our own validators.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/map_state.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "support/export_call.h"
#include "support/bred_data_sets.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using testing::ReadLines;
using testing::ReadText;
using testing::WriteText;

const std::string kExample = "f2_five_chromosomes.map";

// A prefix and a number ("T12").
std::string Numbered(const char* prefix, uint64_t k) {
  std::string s(prefix);
  s += std::to_string(k);
  return s;
}

class MapRun : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    WriteText(kExample, ReadText(testing::SourcePath("examples/" + kExample)));
  }
};

TEST_F(MapRun, APathEndsAtItsFirstNul) {
  // A front end that passes its buffer's size (char path[32], sizeof path) once had every
  // result file written onto the input itself: the names kept the NULs and ended at the first.
  const std::string input = ReadText(kExample);
  char path[32] = "f2_five_chromosomes.map";
  int status = -1;
  ::testing::internal::CaptureStdout();
  MAPAllByDefault(static_cast<int>(sizeof path), path, &status);
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadText(kExample), input);
  EXPECT_TRUE(testing::FileExists("f2_five_chromosomes.sum"));
  EXPECT_TRUE(testing::FileExists("f2_five_chromosomes.LRD"));
}

TEST_F(MapRun, NoResultFileReplacesTheInput) {
  // An input named cross.mtp was overwritten by its own .mtp report, with status 0.
  const std::string input = ReadText(kExample);
  WriteText("cross.mtp", input);
  ASSERT_EQ(testing::CallOnPath(MAPAllByDefault, "cross.mtp"), 0);
  EXPECT_EQ(ReadText("cross.mtp"), input);
  EXPECT_TRUE(testing::FileExists("cross.sum"));
  EXPECT_THAT(ReadText("MAP.log"),
              HasSubstr("Warning: result file not written, it would replace the input file! File=cross.mtp"));
  // Named like its own pairwise file, the input stays too; the run cannot go on without one.
  WriteText("cross.LRD", input);
  EXPECT_EQ(testing::CallOnPath(MAPAllByDefault, "cross.LRD"), 1101);
  EXPECT_EQ(ReadText("cross.LRD"), input);
}

// The run's own input files are read back in map_tool_frame_test; here what they say.
TEST_F(MapRun, WrittenInputFilesCarryTheMapAndCanBeCompleted) {
  ASSERT_EQ(testing::CallOnPath(MAPAllByDefault, kExample), 0);
  // EC.map: a new mapping run starts from it, each kept marker anchored to its chromosome.
  std::vector<int> anchors;
  ASSERT_EQ(testing::CheckMapFile("f2_five_chromosomesEC.map", &anchors), 0);
  std::map<std::string, int> chromosome_of;
  for (const auto& [group, name] : testing::SumMapRows("f2_five_chromosomes.sum")) chromosome_of[name] = group;
  const std::vector<std::string> ec = ReadLines("f2_five_chromosomesEC.map");
  const auto anchor_block = std::find(ec.begin(), ec.end(), "!Marker name followed by anchor group");
  ASSERT_NE(anchor_block, ec.end());
  size_t kept = 0;
  for (auto line = anchor_block + 1; line != ec.end() && !line->empty(); ++line, ++kept) {
    std::istringstream row(*line);
    std::string name;
    int anchor = 0;
    row >> name >> anchor;
    EXPECT_EQ(anchor, chromosome_of.at(name)) << name;
    EXPECT_EQ(anchors[kept], anchor);
  }
  EXPECT_EQ(kept, anchors.size());
  EXPECT_GT(kept, 140u);

  // The .met frame carries 0 environments until its user adds them: that count is the one
  // thing the validator refuses. Completed with one environment of phenotypes, it passes.
  std::string met = ReadText("f2_five_chromosomes.met");
  const size_t envs = met.find("!Number of environments");
  ASSERT_NE(envs, std::string::npos);
  const size_t line_start = met.rfind('\n', envs) + 1;
  met.replace(line_start, envs - line_start, "         1  ");
  met += "Env1";
  for (int k = 0; k < 200; ++k) met += Numbered(" ", 10 + k % 7);
  met += "\n";
  WriteText("completed.met", met);
  EXPECT_EQ(testing::CallOnPath(CheckErrorMET, "completed.met"), 0);
}


TEST_F(MapRun, HandEditsShowInTheReports) {
  std::vector<int> anchors;
  std::vector<std::string> names_of;
  ASSERT_EQ(testing::CheckMapFile(kExample, &anchors, &names_of), 0);
  MapModel map;
  AllocateMapState(map, 150);
  int status = -1;
  ::testing::internal::CaptureStdout();
  MAPGrouping(104, 1, 1, 3.0f, 150, anchors.data(), map.group.data(), &status);
  RebuildGroupModel(map);
  MAPOrderingAll(104, 2, 2, 1, 5, 3, 150, map.num_groups, map.group_size.data(), map.group_status.data(),
                 &map.map_state, anchors.data(), map.group.data(), map.order.data(), map.position.data(), &status);
  MAPRipplingAll(104, 1, 5, 150, map.num_groups, map.group_size.data(), map.group_status.data(),
                 &map.map_state, map.group.data(), map.order.data(), map.position.data(), &status);
  ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(map.num_groups, 5);

  const int start2 = map.group_size[0], size2 = map.group_size[1];
  std::vector<int> second(map.order.begin() + start2, map.order.begin() + start2 + size2);
  const int first_marker = map.order[0];
  MAPGroupReverse(size2, map.order.data() + start2, map.position.data() + start2);
  MAPGroupMarkerMove(1, 0, 1, map.num_groups, 150, &map.num_mapped, &map.num_unlinked, &map.num_deleted,
                     map.group_size.data(), map.group_status.data(), map.group.data(), map.order.data(),
                     map.position.data());
  ASSERT_EQ(map.num_deleted, 1);

  std::vector<int> names;
  for (int g = 1; g <= 5; ++g) {
    std::string name = Numbered("Chromsome", g);
    name.resize(19, ' ');
    for (char c : name) names.push_back(static_cast<unsigned char>(c));
  }
  ::testing::internal::CaptureStdout();
  MAPOutput(static_cast<int>(kExample.size()), kExample.data(), 150, anchors.data(), map.num_mapped,
            map.num_unlinked, 5, names.data(), map.group_size.data(), map.order.data(), map.position.data(),
            0, 0, 0, 0);
  ::testing::internal::GetCapturedStdout();

  const auto rows = testing::SumMapRows("f2_five_chromosomes.sum");
  EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const auto& r) { return r.first == 1; }), 29);
  std::vector<std::string> shown;
  for (const auto& [group, name] : rows)
    if (group == 2) shown.push_back(name);
  ASSERT_EQ(shown.size(), second.size());
  for (size_t k = 0; k < shown.size(); ++k) EXPECT_EQ(shown[k], names_of[second[second.size() - 1 - k] - 1]);
  const std::string sum = ReadText("f2_five_chromosomes.sum");
  const std::string deleted = sum.substr(sum.find("DeletedMarkerID"));
  EXPECT_THAT(deleted, HasSubstr(names_of[first_marker - 1]));
  EXPECT_FALSE(testing::FileExists("f2_five_chromosomes.lod"));  // its switch was off
}

}  // namespace
}  // namespace gae
