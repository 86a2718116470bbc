// The map pipeline on bred clonal F1 progeny with wrong calls: groups against the chromosomes
// bred, orders, distances and both parents' lengths against the breeder's positions, and the
// phases of .hap against the homologues the breeder put each allele on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstdio>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "input/tool_codes.h"
#include "pipeline/map_pipeline.h"
#include "support/bred_data_sets.h"
#include "support/bred_groups.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::SimulatedClonalMarker;

constexpr int kChromosomes = 3, kMarkers = 60;
constexpr double kLengthCm = 100.0;

struct BredGenome {
  std::vector<SimulatedClonalMarker> markers;  // chromosome by chromosome, by position
  std::vector<std::vector<std::string>> types;
};

// Types another than `type` that a marker of `category` shows.
std::string WrongType(int category, const std::string& type, std::mt19937& rng) {
  static const std::vector<std::string> kShown[] = {
      {}, {"AC", "AD", "BC", "BD"}, {"XC", "XD"}, {"AX", "BX"}, {"AA", "AB", "BB"}, {"AA", "AB", "BB"}};
  const std::vector<std::string>& shown = kShown[category];
  std::string other = type;
  while (other == type) other = shown[rng() % shown.size()];
  return other;
}

BredGenome Breed(int progeny, uint64_t seed) {
  std::mt19937 rng(static_cast<unsigned>(seed));
  std::uniform_real_distribution<double> along(0.0, kLengthCm);
  BredGenome genome;
  for (int c = 1; c <= kChromosomes; ++c) {
    std::vector<double> positions = {0.0, kLengthCm};
    while (positions.size() < kMarkers) positions.push_back(along(rng));
    std::sort(positions.begin(), positions.end());
    std::vector<SimulatedClonalMarker> chromosome;
    for (int k = 0; k < kMarkers; ++k) {
      SimulatedClonalMarker m;
      char name[16];
      std::snprintf(name, sizeof name, "C%dM%02d", c, k);
      m.name = name;
      m.position_cm = positions[static_cast<std::size_t>(k)];
      m.category = 1 + static_cast<int>(rng() % 4);
      m.first_phase = static_cast<int>(rng() % 2);
      m.second_phase = static_cast<int>(rng() % 2);
      chromosome.push_back(m);
    }
    auto types = testing::SimulateClonalChromosome(chromosome, progeny, 0.02, seed * 31 + c);
    for (std::size_t k = 0; k < chromosome.size(); ++k)
      for (std::string& type : types[k])
        if (type != "XX" && rng() % 100 == 0) type = WrongType(chromosome[k].category, type, rng);
    genome.markers.insert(genome.markers.end(), chromosome.begin(), chromosome.end());
    genome.types.insert(genome.types.end(), types.begin(), types.end());
  }
  return genome;
}

class ClonalMapPipeline : public testing::InTempDir, public ::testing::WithParamInterface<int> {};

TEST_P(ClonalMapPipeline, BredChromosomesComeBackWithTheirOrdersLengthsAndPhases) {
  const int progeny = GetParam();
  const BredGenome genome = Breed(progeny, 17);
  std::vector<int> listing(genome.markers.size());
  for (std::size_t k = 0; k < listing.size(); ++k) listing[k] = static_cast<int>(k);
  std::shuffle(listing.begin(), listing.end(), std::mt19937(3));
  testing::WriteText("f1.cdm", testing::CdmInputFile(1, genome.markers, genome.types, listing));
  std::map<std::string, const SimulatedClonalMarker*> bred;
  for (const SimulatedClonalMarker& m : genome.markers) bred[m.name] = &m;

  MapPipelineSettings settings;
  settings.input_path = "f1.cdm";
  settings.tool_code = kClonalToolCode;
  UniformStream random;
  // The ordering's random starts come from a fixed seed so that the run repeats: one from which
  // the search once stopped with the end of a chromosome in blocks the wrong way round and the
  // first parent's map a third too long.
  ::setenv("GAENGINE_SEED", "2", 1);
  ::testing::internal::CaptureStdout();
  const MapPipelineRecord r = RunMapPipeline(settings, random);
  ::testing::internal::GetCapturedStdout();
  ::unsetenv("GAENGINE_SEED");
  ASSERT_TRUE(r.Ok()) << r.failure << r.failure_text;

  std::vector<std::vector<double>> truth;
  int placed = 0;
  for (const PipelineGroup& group : r.groups) {
    if (group.markers.size() < 2) continue;
    std::vector<double> bred_cm;
    std::vector<int32_t> by_position;
    for (const int32_t m : group.markers) {
      const std::string& name = r.marker_names[static_cast<std::size_t>(m - 1)];
      EXPECT_EQ(name.substr(0, 2), r.marker_names[static_cast<std::size_t>(group.markers[0] - 1)].substr(0, 2));
      bred_cm.push_back(bred[name]->position_cm);
    }
    // Ranks of the map order against the bred positions.
    std::vector<int32_t> ranks(bred_cm.size());
    for (std::size_t k = 0; k < bred_cm.size(); ++k)
      ranks[k] = static_cast<int32_t>(std::count_if(bred_cm.begin(), bred_cm.end(), [&](double x) { return x < bred_cm[k]; }));
    EXPECT_GE(std::abs(testing::RankCorrelation(ranks)), 0.98) << group.name;
    for (std::size_t k = 1; k < group.positions_cm.size(); ++k)
      EXPECT_LT(group.positions_cm[k] - group.positions_cm[k - 1], 40.0) << group.name;
    // Each parent's meioses of 200 progeny put about 200 crossovers on a chromosome of a
    // Morgan: a length is known to some 7%.
    EXPECT_NEAR(group.positions_cm.back() / kLengthCm, 1.0, 0.15) << group.name;
    placed += static_cast<int>(group.markers.size());
  }
  EXPECT_EQ(std::count_if(r.groups.begin(), r.groups.end(), [](const PipelineGroup& g) { return g.markers.size() >= 2; }),
            kChromosomes);
  EXPECT_GE(placed, kChromosomes * kMarkers - 3);
  ASSERT_EQ(r.parental_maps.size(), 2u);
  // A parent's map reaches from its first segregating marker to its last (A=B markers segregate
  // in the second parent only, C=D in the first).
  for (int parent = 0; parent < 2; ++parent)
    for (std::size_t g = 0; g < r.groups.size(); ++g) {
      const float length = r.parental_maps[static_cast<std::size_t>(parent)].group_lengths_cm[g];
      if (length <= 0) continue;
      double from = kLengthCm, to = 0;
      for (const int32_t m : r.groups[g].markers) {
        const SimulatedClonalMarker& bred_marker = *bred[r.marker_names[static_cast<std::size_t>(m - 1)]];
        if (bred_marker.category == (parent == 0 ? 2 : 3)) continue;
        from = std::min(from, bred_marker.position_cm);
        to = std::max(to, bred_marker.position_cm);
      }
      EXPECT_NEAR(length / (to - from), 1.0, 0.2) << r.groups[g].name << " parent " << parent;
    }
  ASSERT_TRUE(r.error_rate.has_value());
  EXPECT_NEAR(*r.error_rate, 0.01, 0.005);

  // .hap: a marker's haploid letters name the alleles on each homologue, so the first parent's
  // two letters read in the bred phase agree (or all disagree) along a chromosome.
  std::istringstream hap(testing::ReadText("f1.hap"));
  std::string line;
  std::getline(hap, line);
  std::map<std::pair<std::string, int>, int> agree, counted;
  while (std::getline(hap, line)) {
    std::istringstream row(line);
    std::string id, chromosome, marker, category, a, b, c, d;
    row >> id >> chromosome >> marker >> category >> a >> b >> c >> d;
    const SimulatedClonalMarker& m = *bred.at(marker);
    const std::string key = marker.substr(0, 2);
    // The bred first homologue carries A when its phase is 0; .hap lists homologue 1's allele first.
    if (m.category != 2 && m.category != 4 && m.category != 5) {
      agree[{key, 0}] += (a == "A") == (m.first_phase == 0);
      ++counted[{key, 0}];
    }
    if (m.category != 3 && m.category != 4 && m.category != 5) {
      agree[{key, 1}] += (c == "C") == (m.second_phase == 0);
      ++counted[{key, 1}];
    }
  }
  int right = 0, total = 0;
  for (const auto& [key, n] : counted) {
    right += std::max(agree[key], n - agree[key]);
    total += n;
  }
  ASSERT_GT(total, 0);
  EXPECT_GE(static_cast<double>(right) / total, 0.98);
}

INSTANTIATE_TEST_SUITE_P(Progeny, ClonalMapPipeline, ::testing::Values(200));

}  // namespace
}  // namespace gae
