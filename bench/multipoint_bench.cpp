// The multipoint engine on bred chromosomes (the tests' breeder; crossovers without
// interference, so lengths are compared in Haldane's function).
// Speed: one chromosome of 2,000 markers (0.1 cM apart) x 300 F2 plants, 1% errors, 5% missing:
// distances in the true order, and the whole group map (fit, likelihood polish from a start
// with every tenth pair of neighbours exchanged, or with every marker shuffled among its
// neighbours; relocation, linkage check, suspects).
// Quality: 100 markers 1 cM apart x 200 individuals, eight seeds, start order shuffled inside
// stretches of four: length over truth, rank correlation of the polished order, recall and
// precision of the suspect calls.
// Run: build/gaengine_bench --benchmark_filter=Multipoint
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "multipoint/group_map.h"
#include "support/bred_groups.h"

namespace {

using gae::testing::BredGroup;
using gae::testing::BredGroupPlan;

std::vector<int32_t> Identity(int n) {
  std::vector<int32_t> v(n);
  std::iota(v.begin(), v.end(), 0);
  return v;
}

const BredGroup& LargeF2() {
  static const BredGroup group = [] {
    BredGroupPlan plan;
    plan.positions_cm = gae::testing::EvenPositions(2000, 0.1);
    plan.individuals = 300;
    plan.error_rate = 0.01;
    plan.missing = 0.05;
    return gae::testing::BreedGroup(plan);
  }();
  return group;
}

void BM_MultipointDistances(benchmark::State& state) {
  const BredGroup& g = LargeF2();
  gae::MultipointOptions options;
  options.polish_order = false;
  for (auto _ : state) {
    const auto map = gae::MapGroupMultipoint(7, 300, g.types, g.categories, Identity(2000), options);
    state.counters["em_iterations"] = map.em_iterations;
    state.counters["length_cm"] = map.positions_cm.back();
  }
}
BENCHMARK(BM_MultipointDistances)->Unit(benchmark::kSecond)->Iterations(1);

// Arg 0: every tenth pair of neighbours exchanged; 1: every marker shuffled inside its stretch
// of four.
void BM_MultipointPolish(benchmark::State& state) {
  const BredGroup& g = LargeF2();
  std::vector<int32_t> start = Identity(2000);
  std::mt19937 rng(3);
  if (state.range(0) == 0)
    for (int k = 0; k + 1 < 2000; k += 10) std::swap(start[k], start[k + 1]);
  else
    for (int k = 0; k + 4 <= 2000; k += 4) std::shuffle(start.begin() + k, start.begin() + k + 4, rng);
  for (auto _ : state) {
    const auto map = gae::MapGroupMultipoint(7, 300, g.types, g.categories, start, {});
    state.counters["moves"] = map.polish_moves;
    state.counters["rank_correlation"] = std::fabs(gae::testing::RankCorrelation(map.order));
    state.counters["dropped"] = static_cast<double>(map.dropped.size());
  }
}
BENCHMARK(BM_MultipointPolish)->Arg(0)->Arg(1)->Unit(benchmark::kSecond)->Iterations(1);

// Args: population type, error rate in tenths of a percent, 1 for a third of the markers
// dominant and a third recessive.
void BM_MultipointQuality(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const double error = state.range(1) / 1000.0;
  const double mixed = state.range(2) == 1 ? 1.0 / 3.0 : 0.0;
  const int markers = 100;
  double ratio = 0, worst_rank = 1, hits = 0, injected = 0, flagged = 0;
  int runs = 0;
  for (auto _ : state) {
    for (uint64_t seed = 1; seed <= 8; ++seed, ++runs) {
      BredGroupPlan plan;
      plan.population_type = type;
      plan.positions_cm = gae::testing::EvenPositions(markers, 1.0);
      plan.individuals = 200;
      plan.error_rate = error;
      plan.missing = 0.05;
      plan.seed = seed;
      plan.dominant_share = plan.recessive_share = mixed;
      const BredGroup g = gae::testing::BreedGroup(plan);
      std::vector<int32_t> start = Identity(markers);
      std::mt19937 rng(static_cast<unsigned>(seed));
      for (int k = 0; k + 4 <= markers; k += 4) std::shuffle(start.begin() + k, start.begin() + k + 4, rng);
      gae::MultipointOptions options;
      options.mapping_function = 2;
      const auto map = gae::MapGroupMultipoint(type, plan.individuals, g.types, g.categories, start, options);
      ratio += map.positions_cm.back() / (markers - 1.0);
      worst_rank = std::min(worst_rank, std::fabs(gae::testing::RankCorrelation(map.order)));
      injected += static_cast<double>(std::count(g.wrong.begin(), g.wrong.end(), true));
      flagged += static_cast<double>(map.suspects.size());
      for (const auto& s : map.suspects) hits += g.wrong[static_cast<std::size_t>(s.marker) * plan.individuals + s.individual];
    }
  }
  state.counters["length_ratio"] = ratio / runs;
  state.counters["worst_rank_corr"] = worst_rank;
  if (injected > 0) {
    state.counters["suspect_recall"] = hits / injected;
    state.counters["suspect_precision"] = flagged > 0 ? hits / flagged : 0;
  }
}
BENCHMARK(BM_MultipointQuality)
    ->ArgsProduct({{7, 1, 4}, {0, 10, 30}, {0}})
    ->Args({3, 10, 0})
    ->Args({7, 0, 1})
    ->Args({7, 10, 1})
    ->Unit(benchmark::kSecond)
    ->Iterations(1);

}  // namespace
