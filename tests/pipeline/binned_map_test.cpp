// Bins in the map run: copies of a marker ride at its position in the map the run writes, read
// back from its QTL file; near copies only with a tolerance; none without bins.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "input/qtl_file_reader.h"
#include "pipeline/map_pipeline.h"
#include "support/bred_data_sets.h"
#include "support/temp_dir.h"
#include "vocabulary/message_code.h"

namespace gae {
namespace {

std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

// Each mapped marker's group and position as the written QTL file has them.
std::map<std::string, std::pair<size_t, double>> WrittenMap(const std::string& path) {
  InputFile in;
  std::map<std::string, std::pair<size_t, double>> placed;
  if (!in.Open(path)) return placed;
  QtlFileData sdl;
  bool missing_word = false;
  ReadQtlFile(in, QtlTool::kSDL, sdl, missing_word);
  if (MessageCode() != 0) return placed;
  for (size_t g = 0; g < sdl.map.chromosomes.size(); ++g) {
    const ChromosomeRecord& c = sdl.map.chromosomes[g];
    for (int k = 0; k < c.NumMarkers(); ++k)
      placed[Trimmed(c.marker_names[static_cast<size_t>(k)])] = {g, c.positions[static_cast<size_t>(k)]};
  }
  return placed;
}

class BinnedMap : public testing::InTempDir {
 protected:
  // Two F2 chromosomes of ten markers 8 cM apart, four exact copies and a copy with one call
  // changed.
  void SetUp() override {
    InTempDir::SetUp();
    std::vector<testing::SimulatedMarker> markers;
    std::vector<std::string> genotypes;
    for (int c = 1; c <= 2; ++c) {
      std::vector<testing::SimulatedMarker> chromosome;
      for (int k = 0; k < 10; ++k) {
        char name[16];
        std::snprintf(name, sizeof name, "C%dM%d", c, k + 10);
        chromosome.push_back({name, 8.0 * k});
      }
      const std::vector<std::string> g = testing::SimulateF2Chromosome(chromosome, 150, 0.03, 40 + c);
      markers.insert(markers.end(), chromosome.begin(), chromosome.end());
      genotypes.insert(genotypes.end(), g.begin(), g.end());
    }
    for (const size_t from : {0u, 4u, 9u, 15u, 12u}) {
      markers.push_back({markers[from].name + "d", markers[from].position_cm});
      genotypes.push_back(genotypes[from]);
      copies_[markers.back().name] = markers[from].name;
    }
    std::string& near = genotypes.back();  // the copy of C2M12
    const size_t at = near.find_first_not_of('X');
    near[at] = near[at] == 'A' ? 'B' : 'A';
    std::vector<int> listing(markers.size());
    for (size_t k = 0; k < listing.size(); ++k) listing[k] = static_cast<int>(k);
    testing::WriteText("f2.map", testing::MapInputFile(markers, genotypes, listing, 150));
    settings_.input_path = "f2.map";
  }

  MapPipelineRecord Run() {
    UniformStream random;
    ::testing::internal::CaptureStdout();
    MapPipelineRecord record = RunMapPipeline(settings_, random);
    ::testing::internal::GetCapturedStdout();
    return record;
  }

  std::map<std::string, std::string> copies_;  // copy -> original
  MapPipelineSettings settings_;
};

TEST_F(BinnedMap, CopiesSitAtTheirRepresentativesPositionInTheWrittenMap) {
  using Binning = MapPipelineSettings::Binning;
  struct Case {
    Binning binning;
    float tolerance;
    int32_t bins;
    int riding;  // copies written at their original's position
  };
  // With the tolerance the changed call (1 of about 145 typed) no longer keeps the near copy
  // apart; without bins every copy is mapped itself (an exact copy may still land on its
  // original's position, so only the bins are counted there).
  for (const Case& c : {Case{Binning::kOn, 0.0f, 21, 4}, Case{Binning::kOn, 0.02f, 20, 5}, Case{Binning::kOff, 0.0f, 0, -1}}) {
    settings_.binning = c.binning;
    settings_.bin_tolerance = c.tolerance;
    const MapPipelineRecord r = Run();
    ASSERT_TRUE(r.Ok()) << r.failure_text;
    EXPECT_EQ(r.bins, c.bins);
    const auto placed = WrittenMap("f2.sdl");
    ASSERT_EQ(placed.size(), 25u);
    int riding = 0;
    for (const auto& [copy, original] : copies_) {
      const auto [group, cm] = placed.at(copy);
      riding += group == placed.at(original).first && cm == placed.at(original).second;
    }
    if (c.riding >= 0) {
      EXPECT_EQ(riding, c.riding) << "tolerance " << c.tolerance;
    }
  }
}

}  // namespace
}  // namespace gae
