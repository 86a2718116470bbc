// Speed of the map engine on synthetic pairwise files: markers at random positions on a few
// chromosomes, backcross-like estimates from 200 individuals (the true frequency by Haldane's
// function, the estimate drawn around it, its LOD), written as a temporary .LRD file.
// Run: build/gaengine_bench --benchmark_filter=Grouping|Ordering|Rippling
#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "engine/frame_ordering.h"
#include "engine/map_state.h"
#include "engine/order_group.h"
#include "engine/rippling.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "support/breeder.h"
#include "twopoint/pair_store_file.h"

namespace {

struct SyntheticMap {
  std::string path;
  int markers = 0;
};

// Points the process at a store of two-word records (minus LOD, frequency; Kosambi).
void UseStore(const std::string& path) {
  gae::PairStoreSettings& settings = gae::Process().pair_store;
  settings.lrd_name = path;
  settings.record_length = 2;
  settings.mapping_function = 1;
}

// Writes the store for `markers` markers on `chromosomes` chromosomes of `length` cM and points the
// process at it. The file is kept for the benchmarks that follow and removed at exit.
SyntheticMap WriteStore(int markers, int chromosomes, unsigned seed, double length = 100.0) {
  SyntheticMap map{"/tmp/gaengine-bench-" + std::to_string(markers) + "-" + std::to_string(chromosomes) + ".LRD", markers};
  std::mt19937 rng(seed);
  std::uniform_int_distribution<int> which(0, chromosomes - 1);
  std::uniform_real_distribution<double> where(0.0, length);
  std::vector<int> chrom(static_cast<std::size_t>(markers));
  std::vector<double> pos(static_cast<std::size_t>(markers));
  for (int i = 0; i < markers; ++i) {
    chrom[static_cast<std::size_t>(i)] = which(rng);
    pos[static_cast<std::size_t>(i)] = where(rng);
  }
  std::FILE* f = std::fopen(map.path.c_str(), "wb");
  std::vector<float> row;
  for (int i = 1; i < markers; ++i) {
    row.clear();
    for (int j = 0; j < i; ++j) {
      double r = 0.5;
      if (chrom[static_cast<std::size_t>(i)] == chrom[static_cast<std::size_t>(j)]) {
        const double d = std::fabs(pos[static_cast<std::size_t>(i)] - pos[static_cast<std::size_t>(j)]);
        // Estimated from 200 individuals: sampling noise makes the orders worth searching.
        // (Unlinked pairs stay at 1/2: among 5e7 of them, noise alone would link the
        // chromosomes at LOD 3 and make the grouping figures meaningless.)
        r = std::binomial_distribution<int>(200, 0.5 * (1.0 - std::exp(-d / 50.0)))(rng) / 200.0;
      }
      const double rr = std::max(r, 1e-4);
      const double lod = 200.0 * (rr * std::log10(rr) + (1.0 - rr) * std::log10(1.0 - rr) + std::log10(2.0));
      row.push_back(static_cast<float>(-std::max(lod, 0.0)));
      row.push_back(static_cast<float>(r));
    }
    std::fwrite(row.data(), sizeof(float), row.size(), f);
  }
  std::fclose(f);
  UseStore(map.path);
  return map;
}

// MAPGrouping on `markers` markers of ten chromosomes: method 1 at LOD 3 (the MAP default),
// or method 2 down to ten groups.
void BM_Grouping(benchmark::State& state, int method, float threshold) {
  const int markers = static_cast<int>(state.range(0));
  const SyntheticMap map = WriteStore(markers, 10, 7);
  std::vector<int> anchor(static_cast<std::size_t>(markers), 0), group(static_cast<std::size_t>(markers));
  int status = 0;
  for (auto _ : state) {
    gae::bench::QuietStdout quiet;
    MAPGrouping(0, method, 1, threshold, markers, anchor.data(), group.data(), &status);
    benchmark::DoNotOptimize(group.data());
  }
  state.counters["groups"] = *std::max_element(group.begin(), group.end());
  std::remove(map.path.c_str());
}
BENCHMARK_CAPTURE(BM_Grouping, ByThreshold, 1, 3.0f)->Arg(10000)->Unit(benchmark::kSecond)->Iterations(1);
BENCHMARK_CAPTURE(BM_Grouping, ToCount, 2, 10.0f)->Arg(1000)->Arg(2000)->Arg(4000)->Unit(benchmark::kSecond)->Iterations(1);

// The store's one chromosome, ordered as the MAP default does: tour search from five
// random nearest-neighbour starts with the open-path 2-opt, on recombination frequency.
void TimeDefaultOrdering(benchmark::State& state, const SyntheticMap& map) {
  setenv("GAENGINE_SEED", "12345", 1);
  std::vector<int> anchor(static_cast<std::size_t>(map.markers), 0), order(static_cast<std::size_t>(map.markers));
  std::vector<float> position(static_cast<std::size_t>(map.markers));
  int status = 0;
  for (auto _ : state) {
    std::iota(order.begin(), order.end(), 1);
    MAPOrdering(0, 2, 2, 1, 5, 3, map.markers, anchor.data(), order.data(), position.data(), &status);
  }
  state.counters["length_cM"] = position.back();
  std::remove(map.path.c_str());
}
void BM_OrderingDefault(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  TimeDefaultOrdering(state, WriteStore(markers, 1, 13, static_cast<double>(state.range(1))));
}
// A dense chromosome (100 cM: most neighbours show no recombinant, many ties) and a long one;
// then one group of 5,000 markers over 150 cM, the size a SNP array gives (target: 10 s).
BENCHMARK(BM_OrderingDefault)->Args({1000, 100})->Args({1000, 400})->Args({5000, 150})->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// One chromosome bred meiosis by meiosis: a backcross of 300 gametes, markers at random
// positions over `length` cM (Haldane), each pair's frequency the share of recombinant
// gametes and its LOD from that share. Unlike the independent draws above, the estimates
// agree with one another as real data do (blocks of markers with no recombinant between them).
std::vector<float> BredRecords(int markers, double length, unsigned seed) {
  constexpr int kGametes = 300, kWords = (kGametes + 63) / 64;
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<double> pos(static_cast<std::size_t>(markers));
  for (double& p : pos) p = unit(rng) * length;
  std::vector<std::size_t> by_position(pos.size());
  std::iota(by_position.begin(), by_position.end(), 0);
  std::sort(by_position.begin(), by_position.end(), [&](std::size_t a, std::size_t b) { return pos[a] < pos[b]; });
  std::vector<double> sorted;
  for (const std::size_t m : by_position) sorted.push_back(pos[m]);
  gae::testing::Breeder breeder = gae::testing::Breeder::AtPositions(sorted, seed);
  const gae::testing::Plant f1 = breeder.Hybrid(0, 1);
  std::vector<uint64_t> bits(static_cast<std::size_t>(markers) * kWords, 0);
  for (int g = 0; g < kGametes; ++g) {
    const gae::testing::Chromosome gamete = breeder.Meiosis(f1);
    for (std::size_t k = 0; k < by_position.size(); ++k)
      if (gamete[k] == 1) bits[by_position[k] * kWords + static_cast<std::size_t>(g / 64)] |= uint64_t{1} << (g % 64);
  }
  std::vector<float> records;
  for (int i = 1; i < markers; ++i) {
    for (int j = 0; j < i; ++j) {
      int recombinants = 0;
      for (int w = 0; w < kWords; ++w)
        recombinants += std::popcount(bits[static_cast<std::size_t>(i) * kWords + w] ^ bits[static_cast<std::size_t>(j) * kWords + w]);
      const double r = static_cast<double>(recombinants) / kGametes;
      const double rr = std::clamp(r, 1e-4, 1.0 - 1e-4);
      const double lod = kGametes * (rr * std::log10(rr) + (1.0 - rr) * std::log10(1.0 - rr) + std::log10(2.0));
      records.push_back(static_cast<float>(-std::max(lod, 0.0)));
      records.push_back(static_cast<float>(r));
    }
  }
  return records;
}

SyntheticMap WriteBredStore(int markers, double length, unsigned seed) {
  SyntheticMap map{"/tmp/gaengine-bench-bred-" + std::to_string(markers) + ".LRD", markers};
  const std::vector<float> records = BredRecords(markers, length, seed);
  std::FILE* f = std::fopen(map.path.c_str(), "wb");
  std::fwrite(records.data(), sizeof(float), records.size(), f);
  std::fclose(f);
  UseStore(map.path);
  return map;
}

// A 5,000-marker group of a bred chromosome of 150 cM ordered with the MAP defaults (target:
// at most 10 s on two cores).
void BM_OrderingDefaultBred(benchmark::State& state) {
  TimeDefaultOrdering(state, WriteBredStore(static_cast<int>(state.range(0)), 150.0, 17));
}
BENCHMARK(BM_OrderingDefaultBred)->Arg(5000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// Ordering around a frame (gaengine map --order frame) in one large group of a bred chromosome
// of 150 cM: a third of the markers co-dominant and ordered with the default search, the rest
// placed into that frame and moved until none moves. Placing is quadratic in the group size a
// round, so this shows where a group grows too large for it. The counters give the map length
// against the default order's on the same pairs (the chromosome is 150 cM).
void BM_OrderAroundFrame(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const std::vector<float> records = BredRecords(markers, 150.0, 23);
  const gae::PairTable table{records.data(), static_cast<int64_t>(records.size() / 2), 2, 1};
  std::vector<int32_t> kind(static_cast<std::size_t>(markers)), order(kind.size());
  for (std::size_t m = 0; m < kind.size(); ++m) kind[m] = m % 3 == 0 ? 1 : (m % 3 == 1 ? 12 : 10);
  std::vector<float> position(kind.size());
  const gae::FrameOrderingOptions options{{2, 2, 1, 5, 3}, 4, gae::kByFirstValue, 5};
  for (auto _ : state) {
    std::iota(order.begin(), order.end(), 1);
    gae::UniformStream random;
    gae::OrderAroundFrame(table, options, markers, kind.data(), order.data(), position.data(), random, {});
  }
  state.counters["length_cM"] = position.back();
  std::iota(order.begin(), order.end(), 1);
  gae::UniformStream random;
  const std::vector<int32_t> no_anchor(kind.size(), 0);
  gae::OrderGroup(table, options.frame, markers, no_anchor.data(), order.data(), position.data(), random, {});
  state.counters["default_cM"] = position.back();
}
BENCHMARK(BM_OrderAroundFrame)->Arg(300)->Arg(1000)->Arg(2000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// Rippling that group, ordered first, with a window of 5 on the LOD value.
void BM_RipplingWindow5(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const SyntheticMap map = WriteStore(markers, 1, 13);
  setenv("GAENGINE_SEED", "12345", 1);
  std::vector<int> anchor(static_cast<std::size_t>(markers), 0), order(static_cast<std::size_t>(markers));
  std::vector<float> position(static_cast<std::size_t>(markers));
  int status = 0;
  std::iota(order.begin(), order.end(), 1);
  MAPOrdering(0, 2, 2, 1, 5, 3, markers, anchor.data(), order.data(), position.data(), &status);
  const std::vector<int> ordered = order;
  for (auto _ : state) {
    order = ordered;
    MAPRippling(0, 1, 5, markers, order.data(), position.data(), &status);
  }
  std::remove(map.path.c_str());
}
BENCHMARK(BM_RipplingWindow5)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
