// The clonal chain against a sum over every hidden path (emissions read from the breeder's own
// type table, not the chain's), windows against whole passes, and EM against bred progeny.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <numeric>
#include <string>
#include <vector>

#include "multipoint/clonal_map.h"
#include "support/breeder.h"
#include "support/bred_data_sets.h"
#include "support/bred_groups.h"

namespace gae {
namespace {

using testing::ClonalType;
using testing::SimulatedClonalMarker;

const char* const kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD", "AX", "BX", "AA", "AB", "BB"};

std::string TypesOf(int category) {
  switch (category) {
    case 1: return "ABCD";
    case 2: return "EF";
    case 3: return "GH";
    default: return "IJK";
  }
}

struct SmallCase {
  std::vector<SimulatedClonalMarker> markers;
  std::vector<char> types;  // marker-major letters
  std::vector<int32_t> categories;
  ClonalRun run;
};

SmallCase RandomCase(int markers, int individuals, std::mt19937& rng) {
  SmallCase c;
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (int m = 0; m < markers; ++m) {
    SimulatedClonalMarker marker;
    marker.category = 1 + static_cast<int>(rng() % 5);
    marker.first_phase = static_cast<int>(rng() % 2);
    marker.second_phase = static_cast<int>(rng() % 2);
    c.markers.push_back(marker);
    c.categories.push_back(marker.category);
    const std::string letters = TypesOf(marker.category) + "X";
    for (int i = 0; i < individuals; ++i) c.types.push_back(letters[rng() % letters.size()]);
    c.run.markers.push_back(m);
    c.run.phases.push_back({static_cast<uint8_t>(marker.first_phase), static_cast<uint8_t>(marker.second_phase)});
  }
  c.run.rf_first.assign(static_cast<std::size_t>(markers) + 1, 0.5);
  c.run.rf_second.assign(static_cast<std::size_t>(markers) + 1, 0.5);
  for (int k = 1; k < markers; ++k) {
    c.run.rf_first[k] = 0.45 * unit(rng);
    c.run.rf_second[k] = 0.45 * unit(rng);
  }
  c.run.error_rate = 0.02 + 0.1 * unit(rng);
  return c;
}

// Sum over all 4^M paths of each progeny, the chance of a call being 1 - e when it shows the
// type the path's homologues give and e spread over the category's other types.
double Enumerated(const SmallCase& c, int individuals) {
  const int m = static_cast<int>(c.markers.size());
  double total = 0;
  for (int i = 0; i < individuals; ++i) {
    double z = 0;
    for (int path = 0; path < (1 << (2 * m)); ++path) {
      double p = 0.25;
      for (int k = 0; k < m; ++k) {
        const int s = (path >> (2 * k)) & 3, h1 = s >> 1, h2 = s & 1;
        if (k > 0) {
          const int prev = (path >> (2 * (k - 1))) & 3;
          p *= ((prev >> 1) == h1 ? 1 - c.run.rf_first[k] : c.run.rf_first[k]) *
               ((prev & 1) == h2 ? 1 - c.run.rf_second[k] : c.run.rf_second[k]);
        }
        const char letter = c.types[static_cast<std::size_t>(k * individuals + i)];
        if (letter == 'X') continue;
        const std::string truth = ClonalType(c.markers[k], h1, h2);
        const double others = static_cast<double>(TypesOf(c.markers[k].category).size()) - 1;
        p *= truth == kTypes[letter - 'A'] ? 1 - c.run.error_rate : c.run.error_rate / others;
      }
      z += p;
    }
    total += std::log(z);
  }
  return total;
}

TEST(ClonalChain, LikelihoodEqualsSumOverEveryHiddenPath) {
  std::mt19937 rng(29);
  for (int trial = 0; trial < 40; ++trial) {
    const int markers = 1 + trial % 4, individuals = 6;
    SmallCase c = RandomCase(markers, individuals, rng);
    const ClonalCalls calls = MakeClonalCalls(individuals, c.types, c.categories);
    ClonalPass pass;
    EXPECT_NEAR(RunClonal(calls, c.run, false, true, pass), Enumerated(c, individuals), 1e-9) << trial;
  }
}

TEST(ClonalChain, WindowsScoreTheWholeChromosomeAndChosenPhasesNeverLoseLikelihood) {
  std::mt19937 rng(7);
  for (int trial = 0; trial < 20; ++trial) {
    const int markers = 5, n = 8;
    SmallCase c = RandomCase(markers, n, rng);
    const ClonalCalls calls = MakeClonalCalls(n, c.types, c.categories);
    ClonalPass whole;
    const double ll = RunClonal(calls, c.run, false, true, whole);
    // Markers 2..3 between the forward vectors of 1 and the backward vectors of 4.
    ClonalRun window;
    window.markers = {2, 3};
    window.phases = {c.run.phases[2], c.run.phases[3]};
    window.rf_first = {c.run.rf_first[2], c.run.rf_first[3], c.run.rf_first[4]};
    window.rf_second = {c.run.rf_second[2], c.run.rf_second[3], c.run.rf_second[4]};
    window.error_rate = c.run.error_rate;
    std::vector<double> left, left_log, right, right_log;
    const ClonalEmission e4 = MakeClonalEmission(c.categories[4], c.run.phases[4], c.run.error_rate);
    for (int i = 0; i < n; ++i) {
      for (int s = 0; s < 4; ++s) {
        left.push_back(whole.alpha[(i * markers + 1) * 4 + s]);
        right.push_back(whole.beta[(i * markers + 4) * 4 + s] * e4[calls.codes[4 * n + i] * 4 + s]);
      }
      left_log.push_back(whole.alpha_log[i * markers + 1]);
      right_log.push_back(whole.beta_log[i * markers + 4]);
    }
    window.left = left.data();
    window.left_log = left_log.data();
    window.right = right.data();
    window.right_log = right_log.data();
    ClonalPass part;
    EXPECT_NEAR(RunClonal(calls, window, false, false, part), ll, 1e-9) << trial;

    ClonalPass chosen;
    RunClonal(calls, c.run, true, false, chosen);
    EXPECT_GE(RunClonal(calls, c.run, false, false, chosen), ll - 1e-9) << trial;
  }
}

// A clonal F1 chromosome of 100 cM bred with 1% wrong calls.
struct BredClonal {
  std::vector<SimulatedClonalMarker> markers;
  std::vector<char> types;
  std::vector<int32_t> categories;
};

// Categories 1 to 4 in turn unless `category` gives them.
BredClonal BreedClonal(int num_markers, int individuals, uint64_t seed, int (*category)(int) = nullptr) {
  std::mt19937 rng(static_cast<unsigned>(seed));
  BredClonal b;
  for (int m = 0; m < num_markers; ++m) {
    SimulatedClonalMarker marker;
    marker.name = "m";
    marker.name += std::to_string(m);
    marker.position_cm = 100.0 * m / (num_markers - 1);
    marker.category = category ? category(m) : 1 + m % 4;
    marker.first_phase = static_cast<int>(rng() % 2);
    marker.second_phase = static_cast<int>(rng() % 2);
    b.markers.push_back(marker);
    b.categories.push_back(marker.category);
  }
  const auto bred = testing::SimulateClonalChromosome(b.markers, individuals, 0.02, seed);
  for (int m = 0; m < num_markers; ++m) {
    const std::string letters = TypesOf(b.markers[m].category);
    for (const std::string& type : bred[m]) {
      char letter = 'X';
      for (int t = 0; t < 11; ++t)
        if (type == kTypes[t]) letter = static_cast<char>('A' + t);
      if (letter != 'X' && rng() % 100 == 0) letter = letters[(letters.find(letter) + 1 + rng() % (letters.size() - 1)) % letters.size()];
      b.types.push_back(letter);
    }
  }
  return b;
}

// Share of markers whose phase, relative to the first marker segregating in that parent,
// agrees with the bred one.
double PhasesRight(const BredClonal& b, const std::vector<int32_t>& order, const std::vector<Phase>& phases) {
  int right = 0, counted = 0;
  for (int parent = 0; parent < 2; ++parent) {
    int first = -1;
    for (std::size_t k = 0; k < order.size(); ++k) {
      const SimulatedClonalMarker& m = b.markers[order[k]];
      if (!SegregatesIn(m.category, parent)) continue;
      const int truth = parent == 0 ? m.first_phase : m.second_phase;
      const int found = parent == 0 ? phases[k].first : phases[k].second;
      if (first < 0) first = truth ^ found;
      ++counted;
      right += (truth ^ found) == first;
    }
  }
  return static_cast<double>(right) / counted;
}

TEST(ClonalChain, EmRecoversEachParentsMapPhasesAndErrorRate) {
  for (const uint64_t seed : {3u, 11u}) {
    const BredClonal b = BreedClonal(40, 300, seed);
    const ClonalCalls calls = MakeClonalCalls(300, b.types, b.categories);
    ClonalChain chain;
    for (int m = 0; m < 40; ++m) chain.order.push_back(m);
    FitClonalChain(calls, chain, {}, true);
    EXPECT_GE(PhasesRight(b, chain.order, chain.phases), 0.99) << seed;
    for (const std::vector<double>* rf : {&chain.rf_first, &chain.rf_second}) {
      double length = 0;
      for (const double r : *rf) length += -50.0 * std::log(1 - 2 * r);  // Haldane, as bred
      EXPECT_NEAR(length, 100.0, 10.0) << seed;
    }
    EXPECT_NEAR(chain.error_rate, 0.01, 0.006) << seed;
  }
}

TEST(ClonalChain, GroupMapRestoresAShuffledOrderAndKeepsEveryLinkedMarker) {
  const BredClonal b = BreedClonal(40, 200, 5);
  std::vector<int32_t> start;
  for (int m = 0; m < 40; ++m) start.push_back(m);
  std::mt19937 rng(5);
  for (int k = 0; k + 3 < 40; k += 4) std::shuffle(start.begin() + k, start.begin() + k + 4, rng);
  MultipointOptions options;
  options.mapping_function = 2;
  const ClonalGroupMap map = MapClonalGroup(200, b.types, b.categories, start, options);
  ASSERT_TRUE(map.map.ok);
  EXPECT_TRUE(map.map.dropped.empty());
  EXPECT_GE(std::abs(testing::RankCorrelation(map.map.order)), 0.98);
  EXPECT_GE(PhasesRight(b, map.map.order, map.phases), 0.98);
  for (std::size_t k = 1; k < map.map.positions_cm.size(); ++k)
    EXPECT_LT(map.map.positions_cm[k] - map.map.positions_cm[k - 1], 40.0);
  EXPECT_NEAR(map.first_length_cm, 100.0, 10.0);
  EXPECT_NEAR(map.second_length_cm, 100.0, 10.0);
}

// A chromosome whose first six markers segregate in the first parent only and last ten in the
// second only: a parent's map spans its own markers (the others' intervals tell nothing of its
// meioses, so EM would leave them where they started) and the combined map is the bred length.
TEST(ClonalChain, EachParentsLengthSpansItsOwnSegregatingMarkers) {
  const BredClonal b = BreedClonal(40, 300, 13, [](int m) { return m < 6 ? 3 : m >= 30 ? 2 : 1 + m % 4; });
  std::vector<int32_t> order(40);
  std::iota(order.begin(), order.end(), 0);
  MultipointOptions options;
  options.mapping_function = 2;  // Haldane, as bred
  options.polish_order = false;
  const ClonalGroupMap map = MapClonalGroup(300, b.types, b.categories, order, options);
  ASSERT_TRUE(map.map.ok);
  const double first_span = b.markers[29].position_cm - b.markers[0].position_cm;
  const double second_span = b.markers[39].position_cm - b.markers[6].position_cm;
  EXPECT_NEAR(map.first_length_cm / first_span, 1.0, 0.12);
  EXPECT_NEAR(map.second_length_cm / second_span, 1.0, 0.12);
  EXPECT_NEAR(map.map.positions_cm.back() / 100.0, 1.0, 0.1);
}

// A progeny's call at an ABCD marker in the middle of the chromosome turned into the type of the
// other homologues of both parents: two crossovers around one marker in each parent's meiosis,
// which the chain cannot believe, so the call is suspect; the calls the breeder left alone
// mostly are not.
TEST(ClonalChain, SuspectsFlagAPlantedWrongCall) {
  BredClonal b = BreedClonal(40, 200, 7);
  const int marker = 20, individual = 13;
  ASSERT_EQ(b.categories[marker], 1);
  char& call = b.types[static_cast<std::size_t>(marker) * 200 + individual];
  if (call == 'X') call = 'A';
  const char swapped[] = {'D', 'C', 'B', 'A'};  // AC <-> BD, AD <-> BC
  call = swapped[call - 'A'];
  std::vector<int32_t> start;
  for (int m = 0; m < 40; ++m) start.push_back(m);
  const ClonalGroupMap map = MapClonalGroup(200, b.types, b.categories, start, {});
  ASSERT_TRUE(map.map.ok);
  const auto& suspects = map.map.suspects;
  EXPECT_TRUE(std::any_of(suspects.begin(), suspects.end(),
                          [&](const SuspectCall& c) { return c.marker == marker && c.individual == individual; }));
  // About 1% of the calls were bred wrong, and not all of them can be seen.
  EXPECT_LT(suspects.size(), 40u * 200u / 50u);
}

}  // namespace
}  // namespace gae
