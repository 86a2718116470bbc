// Whole runs of each map tool through its C exports, the written files read back by our own
// checks. The frame the tools share (log, stops, rereads) is map_tool_frame_test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dirent.h>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/map_state.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "report/pure_line_segregation.h"
#include "support/bred_data_sets.h"
#include "support/export_call.h"
#include "support/temp_dir.h"
#include "vocabulary/fixed_format.h"
#include "vocabulary/pair_index.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::CallOnPath;
using testing::CheckCdmFile;
using testing::CheckPlm;
using testing::PlmCheck;
using testing::ReadLines;
using testing::ReadText;
using testing::WriteText;

const std::string kExample = "f2_five_chromosomes.map";

class MapRun : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    WriteText(kExample, ReadText(testing::SourcePath("examples/" + kExample)));
  }
};

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
  for (int k = 0; k < 200; ++k) met.append(" ").append(std::to_string(10 + k % 7));
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
    std::string name = std::string("Chromsome").append(std::to_string(g));
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

using CdmRun = testing::InTempDir;

// A whole run of a simulated clonal F1 listed out of map order: the check's counts are those
// bred, the .hap rows follow the map, and each parent's letters change where its bred phases do.
// The frame of the run (its log, stops, rereads) is the frame test's CDM row.
TEST_F(CdmRun, ASimulatedClonalF1ThroughHapParentalMapsAndCorrectedData) {
  std::vector<testing::SimulatedClonalMarker> markers;
  const int categories[] = {1, 1, 2, 1, 3, 1, 1, 2, 1, 3, 1, 1};
  const int first[] = {0, 1, 0, 1, 1, 0, 0, 0, 1, 0, 0, 1};
  const int second[] = {0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 0, 1};
  for (int k = 0; k < 12; ++k)
    markers.push_back({std::string("S").append(std::to_string(k + 10)), 4.0 * k, categories[k], first[k], second[k]});
  const auto types = testing::SimulateClonalChromosome(markers, 300, 0.02, 99);
  const std::vector<int> listing = {5, 0, 11, 3, 8, 1, 10, 6, 2, 9, 4, 7};
  WriteText("sim.cdm", testing::CdmInputFile(1, markers, types, listing));
  ASSERT_EQ(CallOnPath(CDMAllByDefault, "sim.cdm"), 0);
  for (const char* suffix : {".sum", ".sumf", ".summ", ".mtp", ".lod", ".lodf", ".lodm", ".rec", ".recf",
                             ".recm", ".dis", ".disf", ".dism", ".err"})
    EXPECT_TRUE(testing::FileExists(std::string("sim") + suffix)) << suffix;
  EXPECT_EQ(ReadText("sim.LRD").size(), 28u * PairCount(12));
  // Rows in map order: the name, then the letters of the homologues A and C.
  std::vector<std::string> names;
  std::vector<char> a, c;
  const std::vector<std::string> hap = ReadLines("sim.hap");
  for (size_t k = 1; k < hap.size(); ++k) {
    names.push_back(fmt::Trim(hap[k].substr(33, 35)));
    a.push_back(hap[k][68 + 12 + 11]);
    c.push_back(hap[k][68 + 36 + 11]);
  }
  ASSERT_EQ(names.size(), 12u);
  auto bred = [&](const std::string& name) { return markers[std::stoi(name.substr(1)) - 10]; };
  // Between consecutive markers that segregate in a parent, the letters change exactly where
  // the bred phases change.
  for (const bool first_parent : {true, false}) {
    int before = -1;
    for (int k = 0; k < 12; ++k) {
      const testing::SimulatedClonalMarker m = bred(names[k]);
      if (m.category == (first_parent ? 2 : 3)) continue;
      if (before >= 0) {
        const testing::SimulatedClonalMarker b = bred(names[before]);
        const bool bred_same = first_parent ? m.first_phase == b.first_phase : m.second_phase == b.second_phase;
        const bool hap_same = first_parent ? a[k] == a[before] : c[k] == c[before];
        EXPECT_EQ(bred_same, hap_same) << names[before] << " " << names[k];
      }
      before = k;
    }
  }
  // Each parent's map leaves out the two markers that do not segregate in it (A=B, C=D).
  for (const char* suffix : {".sumf", ".summ"}) {
    const std::string sum = ReadText(std::string("sim") + suffix);
    const size_t whole = sum.find("         WholeGenome");
    ASSERT_NE(whole, std::string::npos) << suffix;
    EXPECT_EQ(std::stoi(sum.substr(whole + 40, 20)), 10) << suffix;
  }
  // The corrected data are read again by the check, changed only to missing; the QTL file by
  // its validator.
  const testing::CdmCheck read = CheckCdmFile("sim.cdm"), corrected = CheckCdmFile("simEC.cdm");
  ASSERT_EQ(read.status, 0);
  const char* kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD", "AX", "BX", "AA", "AB", "BB", "XX"};
  for (int i = 0; i < 12; ++i) {  // the check counts the types as bred
    EXPECT_EQ(read.category[i], markers[listing[i]].category);
    const std::vector<std::string>& bred_types = types[listing[i]];
    for (int t = 0; t < 12; ++t) EXPECT_EQ(read.sizes[t][i], std::count(bred_types.begin(), bred_types.end(), kTypes[t]));
  }
  ASSERT_EQ(corrected.status, 0);
  ASSERT_EQ(corrected.n, 12);
  for (int k = 0; k < 12; ++k) {  // the corrected file lists the markers in map order
    int i = 0;
    while (i < 12 && read.Name(i) != corrected.Name(k)) ++i;
    ASSERT_LT(i, 12) << corrected.Name(k);
    EXPECT_EQ(corrected.category[k], read.category[i]);
    EXPECT_GE(corrected.sizes[11][k], read.sizes[11][i]);
    for (int t = 0; t < 11; ++t) EXPECT_LE(corrected.sizes[t][k], read.sizes[t][i]);
  }
  EXPECT_EQ(CallOnPath(CheckErrorCDQ, "sim.cdq"), 0);
  // The QTL file holds the genotypes as bred, each marker in the phase .hap gives it: its row
  // is the bred row with A and B, or C and D, or both exchanged. The scan's flags (there are
  // some) go to the corrected data set only.
  const auto qtl = testing::MarkerRowCells("sim.cdq", 300);
  ASSERT_EQ(qtl.size(), 12u);
  auto exchange = [](std::string type, bool ab, bool cd) {
    for (char& c : type) {
      if (ab && (c == 'A' || c == 'B')) c = c == 'A' ? 'B' : 'A';
      else if (cd && (c == 'C' || c == 'D')) c = c == 'C' ? 'D' : 'C';
    }
    return type;
  };
  int flagged = 0;
  for (int i = 0; i < 12; ++i) {
    const auto row = qtl.find(markers[listing[i]].name);
    ASSERT_NE(row, qtl.end()) << markers[listing[i]].name;
    bool in_one_phase = false;
    for (int way = 0; way < 4; ++way) {
      std::vector<std::string> phased;
      for (const std::string& t : types[listing[i]]) phased.push_back(exchange(t, way & 1, way & 2));
      in_one_phase = in_one_phase || phased == row->second;
    }
    EXPECT_TRUE(in_one_phase) << row->first;
    for (int k = 0; k < 12; ++k)
      if (corrected.Name(k) == read.Name(i)) flagged += corrected.sizes[11][k] - read.sizes[11][i];
  }
  EXPECT_GT(flagged, 0);
}

using PlmRun = testing::InTempDir;

TEST_F(PlmRun, AWholeRunOfEachTypeFindsTheBredChromosomesAndWritesEveryFile) {
  for (int type = 1; type <= 4; ++type) {
    SCOPED_TRACE(type);
    const std::vector<int32_t> patterns = type <= 2 ? std::vector<int32_t>{1234, 1214, 1233}
                                                    : std::vector<int32_t>{12345678, 12341234, 12345577};
    const testing::PureLineData data = testing::SimulatePureLineData(
        type, 2, 8, 8.0, type <= 2 ? 120 : 200, patterns, 0.02, 40 + type);
    const std::string stem = std::string("t") + std::to_string(type);
    WriteText(stem + ".plm", testing::PlmInputFile(data));
    // The check counts each marker's letters as the file holds them and tests their shares;
    // the names come back marker-fastest.
    const int founders = type <= 2 ? 4 : 8, n = 16, lines = static_cast<int>(data.letters[0].size());
    const PlmCheck c = CheckPlm(stem + ".plm");
    ASSERT_EQ(c.status, 0);
    EXPECT_EQ(c.category, std::vector<int>(data.patterns.begin(), data.patterns.end()));
    for (int m = 0; m < n; ++m) {
      const std::string& letters = data.letters[m];
      for (int k = 0; k < 9; ++k) EXPECT_EQ(c.sizes[k][m], std::count(letters.begin(), letters.end(), "ABCDEFGHX"[k]));
      const PureLineSegregation t = PureLineSegregationChiSquare(founders, data.patterns[m], letters.data(), lines);
      EXPECT_EQ(c.chi[m], t.chi_square);
      EXPECT_EQ(c.p[m], t.probability);
      EXPECT_EQ(c.anchor[m], 0);
      std::string name;
      for (int j = 0; j < 7; ++j) name += static_cast<char>(c.names[j * n + m]);
      EXPECT_EQ(name, data.names[m]);
    }
    EXPECT_EQ(ReadText(stem + ".LRD").size(), 8u * PairCount(n));
    ASSERT_EQ(testing::CallOnPath(PLMAllByDefault, stem + ".plm"), 0);
    EXPECT_EQ(ReadLines("PLM.log").back(), "DLL PLMAllByDefault run successfully!");
    for (const char* suffix : {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".plq", ".err", "EC.plm"})
      EXPECT_TRUE(testing::FileExists(stem + suffix)) << suffix;
    // Two groups, each of the eight markers of one bred chromosome.
    std::map<int, std::set<std::string>> chromosomes_in;
    for (const auto& [group, name] : testing::SumMapRows(stem + ".sum")) chromosomes_in[group].insert(name.substr(0, 3));
    ASSERT_EQ(chromosomes_in.size(), 2u);
    for (const auto& [group, chromosomes] : chromosomes_in) EXPECT_EQ(chromosomes.size(), 1u) << group;
    EXPECT_EQ(testing::SumMapRows(stem + ".sum").size(), 16u);
    // The corrected data set starts a new run, and the QTL file passes its validator.
    const PlmCheck again = CheckPlm(stem + "EC.plm");
    ASSERT_EQ(again.status, 0);
    for (int anchor : again.anchor) EXPECT_TRUE(anchor == 1 || anchor == 2) << anchor;
    EXPECT_EQ(testing::CallOnPath(CheckErrorPLQ, stem + ".plq"), 0);
    // The QTL file holds the letters as bred; the scan's flags go to EC.plm only.
    const auto qtl = testing::MarkerRowCells(stem + ".plq", lines);
    ASSERT_EQ(qtl.size(), 16u);
    for (int m = 0; m < n; ++m) {
      const auto row = qtl.find(data.names[m]);
      ASSERT_NE(row, qtl.end()) << data.names[m];
      std::string letters;
      for (const std::string& cell : row->second) letters += cell;
      EXPECT_EQ(letters, data.letters[m]) << data.names[m];
    }
  }
}

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
  EXPECT_EQ(FilesHere(), (std::set<std::string>{"CMP.log", "copies.LRD", "copies.cmp", "copies.dis", "copies.sum", "maps.cmp"}));
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
  ASSERT_THAT((std::vector<int>{status, num_chs, n, space_type, space_unit}), ElementsAre(0, 3, 16, 2, 1));
  std::vector<int> names(35 * n), maps(n), places(n * num_chs, -1);
  CheckErrorCMP(8, "maps.cmp", num_chs, n, names.data(), maps.data(), places.data(), &status);
  ASSERT_EQ(status, 0);
  EXPECT_THAT(ReadText("CMP.log"), HasSubstr("DLL CheckErrrorCMP"));
  // gwm126 is the 15th distinct marker (first on the second map, after the first map's 14):
  // missing from map 1, third on map 2, first on map 3.
  std::string name15;
  for (int j = 0; j < 6; ++j) name15 += static_cast<char>(names[j * n + 14]);
  EXPECT_EQ(name15, "gwm126");
  EXPECT_THAT((std::vector<int>{places[14], places[n + 14], places[2 * n + 14]}), ElementsAre(0, 3, 1));
  // gwm100 is not on the third map, gwm113 on every map.
  EXPECT_THAT((std::vector<int>{maps[14], maps[0], maps[1]}), ElementsAre(2, 2, 3));
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
  MAPRipplingAll(105, 3, 5, n, 1, size.data(), state.data(), &map_state, group.data(),
                 order.data(), position.data(), &status);
  ASSERT_EQ(status, 0);  // of both
  EXPECT_EQ(map_state, 3);
  std::vector<int> group_name(19, ' ');
  for (int j = 0; j < 10; ++j) group_name[j] = "Chromsome1"[j];
  CMPOutput(8, "maps.cmp", n, n, 0, 1, group_name.data(), size.data(), order.data(),
            position.data(), 1);
  const std::string stepwise = ReadText("maps.sum") + ReadText("maps.dis");
  CMPAllByDefault(8, "maps.cmp", &status);
  ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(status, 0);
  EXPECT_EQ(ReadText("maps.sum") + ReadText("maps.dis"), stepwise);
}

}  // namespace
}  // namespace gae
