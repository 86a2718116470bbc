// The clonal multipoint chain on one bred chromosome of 2,000 markers (0.05 cM apart, the four
// categories in turn, random phases) x 300 clonal F1 progeny, 1% wrong calls, 2% missing: the
// distances and phases in the true order, and the whole group map from a start with every
// marker shuffled inside its stretch of four.
// Run: build/gaengine_bench --benchmark_filter=ClonalMultipoint
#include <benchmark/benchmark.h>

#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "multipoint/clonal_map.h"
#include "support/bred_data_sets.h"
#include "support/bred_groups.h"

namespace {

constexpr int kMarkers = 2000, kProgeny = 300;

struct Bred {
  std::vector<char> types;
  std::vector<int32_t> categories;
};

const Bred& LargeClonal() {
  static const Bred bred = [] {
    const char* kTypes[] = {"AC", "AD", "BC", "BD", "XC", "XD", "AX", "BX", "AA", "AB", "BB"};
    std::mt19937 rng(29);
    std::vector<gae::testing::SimulatedClonalMarker> markers(kMarkers);
    for (int m = 0; m < kMarkers; ++m) {
      markers[m].position_cm = 0.05 * m;
      markers[m].category = 1 + m % 4;
      markers[m].first_phase = static_cast<int>(rng() % 2);
      markers[m].second_phase = static_cast<int>(rng() % 2);
    }
    const auto types = gae::testing::SimulateClonalChromosome(markers, kProgeny, 0.02, 29);
    Bred b;
    for (int m = 0; m < kMarkers; ++m) {
      b.categories.push_back(markers[m].category);
      for (const std::string& type : types[m]) {
        char letter = 'X';
        for (int t = 0; t < 11; ++t)
          if (type == kTypes[t]) letter = static_cast<char>('A' + t);
        // A wrong call: another letter the category shows.
        if (letter != 'X' && rng() % 100 == 0) {
          const int first = markers[m].category == 1 ? 0 : markers[m].category == 2 ? 4 : markers[m].category == 3 ? 6 : 8;
          const int count = markers[m].category == 1 ? 4 : markers[m].category >= 4 ? 3 : 2;
          letter = static_cast<char>('A' + first + (letter - 'A' - first + 1 + static_cast<int>(rng() % (count - 1))) % count);
        }
        b.types.push_back(letter);
      }
    }
    return b;
  }();
  return bred;
}

void BM_ClonalMultipointDistances(benchmark::State& state) {
  const Bred& b = LargeClonal();
  std::vector<int32_t> order(kMarkers);
  std::iota(order.begin(), order.end(), 0);
  gae::MultipointOptions options;
  options.polish_order = false;
  options.mapping_function = 2;
  for (auto _ : state) {
    const gae::ClonalGroupMap map = gae::MapClonalGroup(kProgeny, b.types, b.categories, order, options);
    state.counters["em_iterations"] = map.map.em_iterations;
    state.counters["length_cm"] = map.map.positions_cm.back();
    state.counters["first_cm"] = map.first_length_cm;
    state.counters["second_cm"] = map.second_length_cm;
  }
}
BENCHMARK(BM_ClonalMultipointDistances)->Unit(benchmark::kSecond)->Iterations(1);

void BM_ClonalMultipointPolish(benchmark::State& state) {
  const Bred& b = LargeClonal();
  std::vector<int32_t> start(kMarkers);
  std::iota(start.begin(), start.end(), 0);
  std::mt19937 rng(3);
  for (int k = 0; k + 4 <= kMarkers; k += 4) std::shuffle(start.begin() + k, start.begin() + k + 4, rng);
  gae::MultipointOptions options;
  options.mapping_function = 2;
  for (auto _ : state) {
    const gae::ClonalGroupMap map = gae::MapClonalGroup(kProgeny, b.types, b.categories, start, options);
    state.counters["moves"] = map.map.polish_moves;
    state.counters["rank_correlation"] = std::fabs(gae::testing::RankCorrelation(map.map.order));
    state.counters["dropped"] = static_cast<double>(map.map.dropped.size());
    state.counters["length_cm"] = map.map.positions_cm.back();
  }
}
BENCHMARK(BM_ClonalMultipointPolish)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
