#include "twopoint/cdm_pairwise_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <cstdio>

#include "vocabulary/pair_index.h"
#include "frame/process_state.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "report/clonal_reports.h"
#include "support/bred_data_sets.h"
#include "support/temp_dir.h"
#include "twopoint/clonal_two_point.h"
#include "twopoint/pair_store_file.h"

namespace gae {
namespace {

using testing::SimulatedClonalMarker;

class ClonalPairFile : public testing::InTempDir {
 protected:
  // One chromosome, 5 cM apart, phases changing along it. No two AB=CD markers stand next to
  // each other in a parent, so every phase of a neighbouring pair is told by the data.
  std::vector<SimulatedClonalMarker> Markers() const {
    return {{"M01", 0, 1, 0, 0},  {"M02", 5, 1, 1, 0},  {"M03", 10, 2, 0, 1}, {"M04", 15, 1, 1, 1},
            {"M05", 20, 3, 0, 0}, {"M06", 25, 4, 1, 0}, {"M07", 30, 1, 1, 1}, {"M08", 35, 3, 1, 0},
            {"M09", 40, 1, 0, 0}, {"M10", 45, 4, 0, 1}, {"M11", 50, 1, 0, 1}, {"M12", 55, 2, 0, 0}};
  }

  MapToolInput Read(const std::string& path) {
    InputFile in;
    EXPECT_TRUE(in.Open(path));
    MapToolInput data;
    ReadMapToolInput(in, 20, data);
    EXPECT_EQ(MessageCode(), 0);
    return data;
  }

  std::string Write(const std::string& path, const MapToolInput& data, int threads) {
    std::remove((path.substr(0, path.size() - 4) + ".LRD").c_str());
    ClonalMarkers markers;
    markers.population_type = data.population_type;
    markers.num_markers = data.num_markers;
    markers.num_individuals = data.population_size;
    markers.categories = data.markers.categories.data();
    markers.types = data.markers.types.data();
    UniformStream random;
    EXPECT_TRUE(CDMPairwiseFile(path.substr(0, path.size() - 4) + ".LRD", markers, threads, random));
    return testing::ReadText(path.substr(0, path.size() - 4) + ".LRD");
  }
};

TEST_F(ClonalPairFile, SevenWordsPerPairTheSameAtAnyThreadCountWithPhasesOfTheBreeding) {
  const std::vector<SimulatedClonalMarker> markers = Markers();
  const auto types = testing::SimulateClonalChromosome(markers, 400, 0.02, 17);
  std::vector<int> listing(markers.size());
  for (size_t k = 0; k < listing.size(); ++k) listing[k] = static_cast<int>(k);
  testing::WriteText("sim.cdm", testing::CdmInputFile(1, markers, types, listing));
  const MapToolInput data = Read("sim.cdm");

  const std::string one = Write("sim.cdm", data, 1);
  ASSERT_EQ(one.size(), 28u * PairCount(12));
  EXPECT_EQ(Write("sim.cdm", data, 4), one);

  PairStoreFile store;
  ASSERT_TRUE(store.Open("sim.LRD", 7, 1));
  const PairTable& pairs = store.Table();
  for (int i = 2; i <= 12; ++i) {
    const SimulatedClonalMarker &a = markers[i - 2], &b = markers[i - 1];
    const int32_t phase = std::bit_cast<int32_t>(pairs.Word(i, i - 1, 6));
    if (a.category == 4 && b.category == 4) continue;
    const bool first_told = a.category != 2 && b.category != 2;
    const bool second_told = a.category != 3 && b.category != 3;
    const bool first_repulsion = first_told && a.first_phase != b.first_phase;
    const bool second_repulsion = second_told && a.second_phase != b.second_phase;
    EXPECT_EQ(phase, 1 + (first_repulsion ? 2 : 0) + (second_repulsion ? 1 : 0)) << a.name << " " << b.name;
    EXPECT_LE(pairs.Second(i, i - 1), 0.12f) << a.name << " " << b.name;  // 5 cM
    EXPECT_LE(pairs.First(i, i - 1), -5.0f);
  }

  // The phases along the chromosome: a sign change wherever a parent's phase changes, and the
  // rewritten genotypes in one phase, which a fresh estimate of each neighbouring pair confirms.
  ClonalLayout map;
  map.population_type = 1;
  map.num_individuals = data.population_size;
  map.marker_names = data.markers.names;
  map.category = data.markers.categories;
  map.types = data.markers.types;
  map.num_markers = map.num_mapped = 12;
  map.anchor.assign(12, 0);
  map.chromosome_names = {std::string("Chromsome1         ")};  // 19 characters, as read
  map.chromosome_sizes = {12};
  for (int k = 1; k <= 12; ++k) {
    map.order.push_back(k);
    map.position.push_back(5.0f * (k - 1));
  }
  const Haplotypes hap =
      ClonalHaplotypes(map, ClonalPhaseSigns(map, pairs), std::string(data.markers.types.begin(), data.markers.types.end()));
  std::vector<std::string> lines;
  for (size_t start = 0, p = hap.text.find('\n'); p != std::string::npos;
       start = p + 1, p = hap.text.find('\n', start))
    lines.push_back(hap.text.substr(start, p - start));
  ASSERT_EQ(lines.size(), 13u);
  auto letter = [&](int row, int field) {  // fields after the name: 0 category .. 5 new category
    return lines[row][12 + 1 + 19 + 1 + 35 + 12 * field + 11];
  };
  for (int k = 1; k <= 12; ++k) {
    const SimulatedClonalMarker& m = markers[k - 1];
    // Relative to the first marker, whose homologues are named A, B and C, D.
    const bool first_same = m.first_phase == markers[0].first_phase;
    const bool second_same = m.second_phase == markers[0].second_phase;
    if (m.category == 1 || m.category == 3) {
      EXPECT_EQ(letter(k, 1), first_same ? 'A' : 'B') << m.name;
    }
    const std::string base = m.category == 4 ? "AB" : (m.category == 5 ? "BA" : "CD");
    if (m.category != 3) {
      EXPECT_EQ(letter(k, 3), second_same ? base[0] : base[1]) << m.name;
    }
  }
  // After rewriting, the markers other than AB=CD are all in coupling with one another.
  const int64_t n = data.population_size;
  int before = 0;
  for (int k = 1; k <= 12; ++k) {
    if (data.markers.categories[k - 1] >= 4) continue;
    if (before > 0) {
      int first = before, second = k;
      if (data.markers.categories[second - 1] < data.markers.categories[first - 1]) std::swap(first, second);
      float cells[16];
      CDMPairCounts(n, hap.genotypes.data() + (first - 1) * n, hap.genotypes.data() + (second - 1) * n, cells);
      UniformStream random;
      EXPECT_EQ(CDMPairClonal(data.markers.categories[first - 1], data.markers.categories[second - 1], cells,
                              random).phase, 1) << before << " " << k;
    }
    before = k;
  }
}

}  // namespace
}  // namespace gae
