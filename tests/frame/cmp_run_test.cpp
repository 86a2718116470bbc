// The consensus-map tool through its C exports: the check, the stages with ToolCode 105, the
// reports, and the whole run. The frame of the run (its log, its stops, the output's checks)
// is a row of map_tool_frame_test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dirent.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ReadLines;
using testing::ReadText;

std::set<std::string> FilesHere() {
  std::set<std::string> names;
  DIR* dir = ::opendir(".");
  while (const dirent* entry = ::readdir(dir))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  ::closedir(dir);
  return names;
}

// Marker names of section 1 of a .sum, in map order.
std::vector<std::string> SumMarkers(const std::string& path) {
  std::vector<std::string> names;
  for (const auto& row : testing::SumMapRows(path)) names.push_back(row.second);
  return names;
}

class CmpRun : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    ::setenv("GAENGINE_SEED", "17", 1);
    testing::WriteText("maps.cmp", ReadText(testing::SourcePath("examples/three_maps_3b.cmp")));
  }
  void TearDown() override {
    ::unsetenv("GAENGINE_SEED");
    InTempDir::TearDown();
  }
  static int Len(const std::string& s) { return static_cast<int>(s.size()); }
};

TEST_F(CmpRun, NoisyStretchedCopiesOfOneMapGiveItsOrderAndOnlyThreeFiles) {
  // One true map of 30 markers 3 to 6 cM apart; four copies, each stretched by its own factor,
  // with its own noise on every position and about a fifth of the markers missing. The markers
  // are listed in map order on each copy, so the file's marker numbers are not the true order.
  std::mt19937 rng(7);
  std::vector<double> truth = {0};
  std::uniform_real_distribution<double> gap(3, 6);
  while (truth.size() < 30) truth.push_back(truth.back() + gap(rng));
  std::string chromosomes, rows;
  int c = 0;
  for (double stretch : {1.3, 0.8, 1.0, 1.15}) {
    std::normal_distribution<double> noise(0, 0.4);
    std::bernoulli_distribution missing(0.2);
    std::vector<std::pair<double, int>> copy;
    for (int k = 0; k < 30; ++k)
      if (k == 0 || !missing(rng)) copy.push_back({stretch * truth[k] + noise(rng), k});
    std::sort(copy.begin(), copy.end());
    chromosomes += "Copy" + std::to_string(++c) + " " + std::to_string(copy.size()) + "\n";
    for (const auto& [cm, k] : copy)
      rows += 't' + std::to_string(100 + k) + ' ' + std::to_string(c) + ' ' + std::to_string(cm) + '\n';
  }
  testing::WriteText("copies.cmp", "2\n1\n4\n" + chromosomes + "! rows\n" + rows);
  ASSERT_EQ(testing::CallOnPath(CMPAllByDefault, "copies.cmp"), 0);
  std::vector<std::string> order = SumMarkers("copies.sum");
  if (!order.empty() && order.front() > order.back()) std::reverse(order.begin(), order.end());
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  EXPECT_GE(order.size(), 29u);

  EXPECT_EQ(FilesHere(), (std::set<std::string>{"CMP.log", "copies.LRD", "copies.cmp",
                                                 "copies.dis", "copies.sum", "maps.cmp"}));
}

TEST_F(CmpRun, StepByStepComesToTheFilesOfTheWholeRun) {
  int space_type = 0, space_unit = 0, num_chs = 0, n = 4, status = -1;
  std::vector<int> none(35 * n);
  ::testing::internal::CaptureStdout();
  // Maps with no marker in common cannot be joined; the code's text is the catalogue's.
  testing::WriteText("apart.cmp", "2\n1\n2\nA 2\nB 2\n! map\nm1 A 0\nm2 A 5\nm3 B 0\nm4 B 4\n");
  CheckErrorCMP(9, "apart.cmp", 2, n, none.data(), none.data(), none.data(), &status);
  EXPECT_EQ(status, 2032);
  EXPECT_THAT(ReadText("CMP.log"), HasSubstr("Type I error rate of permutation test out of range (0,0.5)!"));
  EXPECT_THAT(ReadLines("CMP.log").back(), HasSubstr("DLL CheckErrorCMP"));
  EXPECT_FALSE(testing::FileExists("apart.LRD"));

  CMPFindNumMarkers(8, "maps.cmp", &space_type, &space_unit, &num_chs, &n, &status);
  ASSERT_EQ(status, 0);
  ASSERT_EQ(num_chs, 3);
  ASSERT_EQ(n, 16);
  EXPECT_EQ(space_type, 2);
  EXPECT_EQ(space_unit, 1);
  std::vector<int> names(35 * n), maps(n), places(n * num_chs, -1);
  CheckErrorCMP(8, "maps.cmp", num_chs, n, names.data(), maps.data(), places.data(), &status);
  ASSERT_EQ(status, 0);
  EXPECT_THAT(ReadText("CMP.log"), HasSubstr("DLL CheckErrrorCMP"));
  // gwm126 is the 15th distinct marker (first on the second map, after the first map's 14):
  // missing from map 1, third on map 2, first on map 3.
  std::string name15;
  for (int j = 0; j < 6; ++j) name15 += static_cast<char>(names[j * n + 14]);
  EXPECT_EQ(name15, "gwm126");
  EXPECT_EQ(maps[14], 2);
  EXPECT_THAT((std::vector<int>{places[14], places[n + 14], places[2 * n + 14]}), ElementsAre(0, 3, 1));
  EXPECT_EQ(maps[0], 2);  // gwm100: not on the third map
  EXPECT_EQ(maps[1], 3);  // gwm113: on every map

  // The stages with ToolCode 105, as the whole run calls them.
  std::vector<int> group(n, 0);
  MAPGrouping(105, 1, 3, 3.0f, n, maps.data(), group.data(), &status);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(std::set<int>(group.begin(), group.end()), std::set<int>{1});
  std::vector<int> size{n}, state{1}, order(n);
  for (int i = 0; i < n; ++i) order[i] = i + 1;
  std::vector<float> position(n, 0.0f);
  int map_state = 1;
  MAPOrderingAll(105, 2, 3, 1, 5, 3, n, 1, size.data(), state.data(), &map_state, maps.data(),
                 group.data(), order.data(), position.data(), &status);
  ASSERT_EQ(status, 0);
  MAPRipplingAll(105, 3, 5, n, 1, size.data(), state.data(), &map_state, group.data(),
                 order.data(), position.data(), &status);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(map_state, 3);
  std::vector<int> group_name(19, ' ');
  for (int j = 0; j < 10; ++j) group_name[j] = "Chromsome1"[j];
  CMPOutput(8, "maps.cmp", n, n, 0, 1, group_name.data(), size.data(), order.data(),
            position.data(), 1);
  const std::string sum = ReadText("maps.sum"), dis = ReadText("maps.dis");
  CMPAllByDefault(8, "maps.cmp", &status);
  ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(status, 0);
  EXPECT_EQ(ReadText("maps.sum"), sum);
  EXPECT_EQ(ReadText("maps.dis"), dis);
}

}  // namespace
}  // namespace gae
