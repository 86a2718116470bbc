// The exact pair stage on one core, per pair: counting the classes, estimating and writing,
// for a doubled-haploid population (two classes: the (n, k) table answers) and an F2 (pooled
// classes), 2,000 co-dominant markers by 300 individuals. The counter s/pair is the time per
// pair (targets: 60 ns for two-class designs, 100 ns for an F2). The estimator alone, pooled
// and as written for single calls, runs on the tables of the same data.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "support/bred_data_sets.h"
#include "twopoint/exact_two_point.h"
#include "twopoint/genotype_planes.h"
#include "twopoint/input_pair_file.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/pooled_exact_pairs.h"

namespace {

constexpr int kMarkers = 2000, kIndividuals = 300;

const gae::testing::BiparentalData& DataOf(int type) {
  static gae::testing::BiparentalData dh = gae::testing::SimulateBiparentalData(3, 10, kMarkers / 10, 0.75, kIndividuals, 0.01, 0.03, 5);
  static gae::testing::BiparentalData f2 = gae::testing::SimulateBiparentalData(7, 10, kMarkers / 10, 0.75, kIndividuals, 0.01, 0.03, 5);
  return type == 3 ? dh : f2;
}

// Argument: population type (3 doubled haploids, 7 F2).
void BM_ExactPairStageOneCore(benchmark::State& state) {
  const std::string path = "/tmp/gaengine-bench-pair-stage.map";
  {
    std::ofstream out(path);
    out << gae::testing::BiparentalInputFile(DataOf(static_cast<int>(state.range(0))));
  }
  const std::string lrd = gae::PairStoreName(path);
  for (auto _ : state) {
    std::remove(lrd.c_str());
    gae::bench::QuietStdout quiet;
    if (!gae::WriteInputPairFile(path, 104, gae::PairEstimator::kExact, 1)) state.SkipWithError("not written");
  }
  const double pairs = static_cast<double>(kMarkers) * (kMarkers - 1) / 2;
  state.counters["s/pair"] = benchmark::Counter(pairs, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  std::remove(lrd.c_str());
  std::remove(path.c_str());
}
BENCHMARK(BM_ExactPairStageOneCore)->Arg(3)->Arg(7)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

// The class tables of the pairs of every tenth marker: linked and unlinked pairs mixed as in
// the whole file.
std::vector<std::array<float, 9>> TablesOf(int type) {
  const gae::testing::BiparentalData& data = DataOf(type);
  std::string letters;
  for (int m = 0; m < 200; ++m) letters += data.letters[static_cast<std::size_t>(10 * m)];
  const gae::GenotypePlanes planes(letters.data(), 200, kIndividuals);
  std::vector<std::array<float, 9>> tables;
  for (int i = 2; i <= 200; ++i)
    for (int j = 1; j < i; ++j) planes.Count(i, j, tables.emplace_back().data());
  return tables;
}

// Arguments: population type, 0 the single-call estimator or 1 the pooled one.
void BM_ExactEstimator(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const std::vector<std::array<float, 9>> tables = TablesOf(type);
  const gae::PooledExactPairs pooled(type, kIndividuals, {11});
  for (auto _ : state) {
    for (const auto& cells : tables) {
      const gae::ExactTwoPoint e = state.range(1) != 0 ? pooled.Estimate(11, cells.data())
                                                       : gae::ExactTwoPointEstimate(type, 11, cells.data());
      benchmark::DoNotOptimize(e);
    }
  }
  state.counters["s/pair"] = benchmark::Counter(static_cast<double>(tables.size()),
                                                benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ExactEstimator)->ArgsProduct({{3, 7}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace
