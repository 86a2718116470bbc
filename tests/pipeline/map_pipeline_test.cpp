// The library's map pipeline on bred populations: its groups against the chromosomes the
// breeder made, and its record against the files it wrote, read back by the library's readers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "input/qtl_file_reader.h"
#include "input/tool_codes.h"
#include "pipeline/group_layout.h"
#include "pipeline/map_pipeline.h"
#include "support/bred_data_sets.h"
#include "support/temp_dir.h"
#include "twopoint/mapping_function.h"
#include "vocabulary/message_code.h"

namespace gae {
namespace {

using testing::ReadText;
using testing::WriteText;

std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

// The chromosome a bred marker's name gives ("C2M07" lies on 2, "C02M007" too).
int ChromosomeOf(const std::string& name) { return std::stoi(name.substr(1, name.find('M') - 1)); }

// Spearman's rank correlation of positions along the map with the positions bred.
double RankCorrelation(const std::vector<double>& a, const std::vector<double>& b) {
  auto ranks = [](const std::vector<double>& v) {
    std::vector<size_t> idx(v.size());
    for (size_t k = 0; k < v.size(); ++k) idx[k] = k;
    std::sort(idx.begin(), idx.end(), [&](size_t x, size_t y) { return v[x] < v[y]; });
    std::vector<double> r(v.size());
    for (size_t k = 0; k < v.size(); ++k) r[idx[k]] = static_cast<double>(k);
    return r;
  };
  const std::vector<double> ra = ranks(a), rb = ranks(b);
  double d2 = 0;
  for (size_t k = 0; k < a.size(); ++k) d2 += (ra[k] - rb[k]) * (ra[k] - rb[k]);
  const double n = static_cast<double>(a.size());
  return 1.0 - 6.0 * d2 / (n * (n * n - 1.0));
}

MapPipelineRecord RunQuietly(const MapPipelineSettings& settings) {
  UniformStream random;
  ::testing::internal::CaptureStdout();  // the pair writer's catalogue lines
  MapPipelineRecord record = RunMapPipeline(settings, random);
  ::testing::internal::GetCapturedStdout();
  return record;
}

class MapPipeline : public testing::InTempDir {
 protected:
  // Three F2 chromosomes of 12 markers 7 cM apart, listed shuffled.
  void SetUp() override {
    InTempDir::SetUp();
    std::vector<testing::SimulatedMarker> markers;
    std::vector<std::string> genotypes;
    for (int c = 1; c <= 3; ++c) {
      std::vector<testing::SimulatedMarker> chromosome;
      for (int k = 0; k < 12; ++k) {
        char name[16];
        std::snprintf(name, sizeof name, "C%dM%d", c, k + 10);
        chromosome.push_back({name, 7.0 * k});
      }
      const std::vector<std::string> g = testing::SimulateF2Chromosome(chromosome, 150, 0.03, 100 + c);
      markers.insert(markers.end(), chromosome.begin(), chromosome.end());
      genotypes.insert(genotypes.end(), g.begin(), g.end());
    }
    std::vector<int> listing(markers.size());
    for (size_t k = 0; k < listing.size(); ++k) listing[k] = static_cast<int>(k);
    std::shuffle(listing.begin(), listing.end(), std::mt19937(7));
    for (const testing::SimulatedMarker& m : markers) bred_cm_[m.name] = m.position_cm;
    WriteText("f2.map", testing::MapInputFile(markers, genotypes, listing, 150));
    settings_.input_path = "f2.map";
  }

  std::map<std::string, double> bred_cm_;
  MapPipelineSettings settings_;
};

TEST_F(MapPipeline, GroupsAreTheBredChromosomesInTheirOrderAndTheFilesSayWhatTheRecordSays) {
  std::vector<int64_t> announced;  // the sizes the pair file was to reach
  settings_.pairs_starting = [&](const std::string&, int64_t bytes) { announced.push_back(bytes); };
  const MapPipelineRecord r = RunQuietly(settings_);
  ASSERT_TRUE(r.Ok()) << r.failure << " " << r.failure_text;
  EXPECT_TRUE(r.pairs_computed);
  EXPECT_EQ(announced, (std::vector<int64_t>{static_cast<int64_t>(ReadText("f2.LRD").size())}));
  EXPECT_TRUE(r.unlinked.empty());
  ASSERT_EQ(r.groups.size(), 3u);
  std::vector<int> seen;
  for (const PipelineGroup& g : r.groups) {
    ASSERT_EQ(g.markers.size(), 12u);
    const int chromosome = ChromosomeOf(r.marker_names[static_cast<size_t>(g.markers[0] - 1)]);
    seen.push_back(chromosome);
    std::vector<double> bred, mapped;
    for (size_t k = 0; k < g.markers.size(); ++k) {
      const std::string& name = r.marker_names[static_cast<size_t>(g.markers[k] - 1)];
      EXPECT_EQ(ChromosomeOf(name), chromosome) << name;
      bred.push_back(bred_cm_[name]);
      mapped.push_back(g.positions_cm[k]);
    }
    EXPECT_GT(std::abs(RankCorrelation(bred, mapped)), 0.95) << g.name;
    // The multipoint distances see through the missing calls that swell two-point ones.
    EXPECT_GT(g.LengthCm(), 0.8 * 77.0);
    EXPECT_LT(g.LengthCm(), 1.15 * 77.0);
  }
  std::sort(seen.begin(), seen.end());
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 3}));

  // The QTL file's map section holds the record's groups, names and positions.
  InputFile in;
  ASSERT_TRUE(in.Open("f2.sdl"));
  QtlFileData sdl;
  bool missing_word = false;
  ReadQtlFile(in, QtlTool::kSDL, sdl, missing_word);
  ASSERT_EQ(MessageCode(), 0);
  ASSERT_EQ(sdl.map.chromosomes.size(), r.groups.size());
  for (size_t g = 0; g < r.groups.size(); ++g) {
    EXPECT_EQ(Trimmed(sdl.map.chromosome_names[g]), r.groups[g].name);
    const ChromosomeRecord& chromosome = sdl.map.chromosomes[g];
    ASSERT_EQ(chromosome.NumMarkers(), static_cast<int32_t>(r.groups[g].markers.size()));
    for (int k = 0; k < chromosome.NumMarkers(); ++k) {
      EXPECT_EQ(Trimmed(chromosome.marker_names[static_cast<size_t>(k)]),
                r.marker_names[static_cast<size_t>(r.groups[g].markers[static_cast<size_t>(k)] - 1)]);
      EXPECT_NEAR(chromosome.positions[static_cast<size_t>(k)], r.groups[g].positions_cm[static_cast<size_t>(k)], 1e-3);
    }
  }
  // The corrected data set reads back as a MAP file with exactly the suspect calls set to missing.
  auto missing_calls = [](const std::string& path) {
    InputFile file;
    MapToolInput data;
    if (!file.Open(path)) return -1L;
    ReadMapToolInput(file, kMapToolCode, data);
    return MessageCode() == 0 ? static_cast<long>(std::count(data.markers.types.begin(), data.markers.types.end(), 'X')) : -1L;
  };
  ASSERT_EQ(r.corrected_file, "f2EC.map");
  EXPECT_EQ(missing_calls("f2EC.map") - missing_calls("f2.map"), r.genotypes_set_missing);
  ASSERT_TRUE(r.error_rate.has_value());
  EXPECT_EQ(r.genotypes_set_missing, static_cast<int64_t>(r.suspects.size()));
  for (const std::string& file : r.files_written) EXPECT_TRUE(testing::FileExists(file)) << file;
  EXPECT_EQ(r.files_written.front(), "f2.LRD");
  EXPECT_EQ(r.distances.empty(), false);

  // Run again: the pairs are reused; a changed genotype makes them stale.
  EXPECT_FALSE(RunQuietly(settings_).pairs_computed);
  EXPECT_EQ(announced.size(), 1u);
  std::string text = ReadText("f2.map");
  const size_t at = text.find(" H ", text.find("C1M10"));
  text[at + 1] = 'B';
  WriteText("f2.map", text);
  const MapPipelineRecord changed = RunQuietly(settings_);
  EXPECT_TRUE(changed.pairs_computed);
  EXPECT_EQ(changed.pairs_recomputed_because, "it was computed from other data");
}

TEST_F(MapPipeline, AFixedThresholdAndACapDecideTheGroupsAndABadFileStopsWithItsCode) {
  // At a LOD no pair reaches every marker stands alone, and says so in the record.
  settings_.lod = 200.0f;
  MapPipelineRecord r = RunQuietly(settings_);
  ASSERT_TRUE(r.Ok());
  EXPECT_EQ(r.groups.size(), 36u);
  EXPECT_FALSE(r.lod_chosen);
  EXPECT_EQ(r.lod_threshold, 200.0f);
  // A cap below every frequency links nothing either.
  settings_.lod = 3.0f;
  settings_.max_rf = 0.0f;
  r = RunQuietly(settings_);
  EXPECT_EQ(r.groups.size(), 36u);
  EXPECT_GT(r.pairs_capped, 0);

  WriteText("bad.map", "7\n1\n1\n1\n2\nM1 A Q\nM1 0\n");
  settings_.input_path = "bad.map";
  r = RunQuietly(settings_);
  EXPECT_FALSE(r.Ok());
  EXPECT_GT(r.failure, 0);
  EXPECT_TRUE(r.files_written.empty());
}

TEST_F(MapPipeline, PureLinesGroupByLodIntoTheirChromosomes) {
  const testing::PureLineData data =
      testing::SimulatePureLineData(2, 3, 10, 8.0, 200, {1234, 1234, 1233}, 0.02, 11);
  WriteText("four.plm", testing::PlmInputFile(data));
  settings_.input_path = "four.plm";
  settings_.tool_code = kPureLineToolCode;
  const MapPipelineRecord r = RunQuietly(settings_);
  ASSERT_TRUE(r.Ok()) << r.failure;
  ASSERT_EQ(r.groups.size(), 3u);
  for (const PipelineGroup& g : r.groups) {
    ASSERT_EQ(g.markers.size(), 10u);
    for (const int32_t m : g.markers)
      EXPECT_EQ(ChromosomeOf(r.marker_names[static_cast<size_t>(m - 1)]),
                ChromosomeOf(r.marker_names[static_cast<size_t>(g.markers[0] - 1)]));
  }
  EXPECT_EQ(r.corrected_file, "fourEC.plm");
  EXPECT_TRUE(testing::FileExists("four.plq"));
}

TEST_F(MapPipeline, AClonalMapGivesEachParentsMapAsItsFilesListIt) {
  WriteText("clonal.cdm", ReadText(testing::SourcePath("examples/clonal_f1.cdm")));
  settings_.input_path = "clonal.cdm";
  settings_.tool_code = kClonalToolCode;
  settings_.lod = 2.0f;
  const MapPipelineRecord r = RunQuietly(settings_);
  ASSERT_TRUE(r.Ok()) << r.failure;
  ASSERT_EQ(r.parental_maps.size(), 2u);
  // The whole-genome row of each parent's summary: its marker count and length.
  const char* files[] = {"clonal.sumf", "clonal.summ"};
  for (size_t p = 0; p < 2; ++p) {
    const std::string text = ReadText(files[p]);
    ASSERT_NE(text.find("WholeGenome"), std::string::npos);
    const size_t at = text.rfind('\n', text.find("WholeGenome")) + 1;  // the row's first column
    EXPECT_EQ(std::stoi(text.substr(at + 40, 20)), r.parental_maps[p].total_markers) << files[p];
    // The record's lengths are the chain's estimates; the file builds its own from the pairs.
    EXPECT_GT(std::stod(text.substr(at + 60, 20)), 0.0) << files[p];
    EXPECT_EQ(r.parental_maps[p].group_markers.size(), r.groups.size());
  }
  EXPECT_EQ(r.corrected_file, "clonalEC.cdm");
  EXPECT_TRUE(testing::FileExists("clonal.hap"));
}

// The two-point layout of a group against a hand computation on a table of three markers.
TEST(GroupLayout, TwoPointPositionsAddTheNeighboursDistancesInTheStartOrder) {
  // Records (minus LOD, frequency) of the pairs (2,1), (3,1), (3,2).
  const float records[] = {-10.0f, 0.1f, -5.0f, 0.25f, -8.0f, 0.2f};
  const PairTable table{records, 3, 2, 2};  // Haldane
  const std::vector<int32_t> markers = {1, 2, 3};
  const GroupLayout layout = GroupMapFromTwoPoint(table, 2, markers, {2, 0, 1});  // 3, 1, 2
  ASSERT_EQ(layout.interval_rf.size(), 2u);
  EXPECT_FLOAT_EQ(layout.interval_rf[0], 0.25f);
  EXPECT_FLOAT_EQ(layout.interval_rf[1], 0.1f);
  const double d31 = -50.0 * std::log(1.0 - 2 * 0.25), d12 = -50.0 * std::log(1.0 - 2 * 0.1);
  EXPECT_NEAR(layout.positions_cm[1], d31, 1e-3);
  EXPECT_NEAR(layout.positions_cm[2], d31 + d12, 1e-3);
  EXPECT_TRUE(layout.dropped.empty());

  // The start order of the tour search is a permutation that puts 2 beside both others.
  UniformStream random;
  const std::vector<int32_t> start = StartOrder(table, {}, markers, {1, 1, 1}, random, nullptr);
  std::vector<int32_t> sorted = start;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, (std::vector<int32_t>{0, 1, 2}));
  EXPECT_EQ(start[1], 1);

  MapToolInput input;
  input.population_size = 2;
  input.markers.types = {'A', 'B', 'H', 'X', 'B', 'B'};
  EXPECT_EQ(GroupGenotypes(input, {3, 1}), (std::vector<char>{'B', 'B', 'A', 'B'}));
}

}  // namespace
}  // namespace gae
