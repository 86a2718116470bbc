// The whole CheckErrorMAP call on big marker sets: reading, checking and the pairwise file of
// an F2 of 300 individuals with co-dominant markers and 3% missing scores.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "frame/map_tool_driver.h"
#include "frame/map_tool_policy.h"
#include "twopoint/pair_store_writer.h"

namespace {

// Markers spread evenly over ten chromosomes of 150 cM, genotypes bred as in an F2.
std::string WriteF2File(int markers, int individuals) {
  const std::string path = "/tmp/gaengine-bench-f2-" + std::to_string(markers) + ".map";
  std::FILE* f = std::fopen(path.c_str(), "w");
  std::fprintf(f, "7\n1\n1\n%d\n%d\n", markers, individuals);
  std::mt19937_64 rng(markers);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const int per_chromosome = (markers + 9) / 10;
  const double step = 150.0 / per_chromosome;
  const double r = 0.5 * (1.0 - std::exp(-2.0 * step / 100.0));
  std::vector<std::vector<int>> origin(individuals, std::vector<int>(2));
  for (int m = 0; m < markers; ++m) {
    std::fprintf(f, "M%06d", m + 1);
    for (int i = 0; i < individuals; ++i) {
      for (int& o : origin[i]) o = (m % per_chromosome == 0) ? (unit(rng) < 0.5) : (unit(rng) < r ? 1 - o : o);
      const int p1 = (origin[i][0] == 0) + (origin[i][1] == 0);
      std::fprintf(f, " %c", unit(rng) < 0.03 ? 'X' : "BHA"[p1]);
    }
    std::fprintf(f, "\n");
  }
  for (int m = 0; m < markers; ++m) std::fprintf(f, "M%06d 0\n", m + 1);
  std::fclose(f);
  return path;
}

void BM_CheckErrorMapF2(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const std::string path = WriteF2File(markers, 300);
  std::vector<int> names(35 * markers), anchor(markers), a(markers), h(markers), b(markers),
      x(markers), category(markers);
  std::vector<float> chi(markers), p(markers);
  gae::MapCheckArrays out{markers, names.data(), anchor.data(), a.data(), h.data(), b.data(),
                          x.data(), category.data(), chi.data(), p.data()};
  const std::string lrd = gae::PairStoreName(path);
  for (auto _ : state) {
    std::remove(lrd.c_str());
    int status = -1;
    {
      gae::bench::QuietStdout quiet;
      gae::CheckErrorBody(gae::MapPolicy(&out), static_cast<int>(path.size()), path.data(), &status,
                          gae::PairStoreThreads());
    }
    if (status != 0) state.SkipWithError("check failed");
  }
  const double pairs = 0.5 * markers * (markers - 1.0);
  state.counters["pairs"] = pairs;
  state.counters["pairs/s"] = benchmark::Counter(pairs, benchmark::Counter::kIsIterationInvariantRate);
  // Memory stays flat in the number of pairs: genotypes, bit planes and one block per thread.
  struct rusage usage {};
  ::getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  std::remove(lrd.c_str());
  std::remove(path.c_str());
  std::remove("MAP.log");
}
BENCHMARK(BM_CheckErrorMapF2)->Arg(2000)->Unit(benchmark::kSecond)->Iterations(3)->UseRealTime();
BENCHMARK(BM_CheckErrorMapF2)->Arg(10000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
