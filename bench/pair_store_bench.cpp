// The whole CheckErrorMAP call on big marker sets: reading, checking and the pairwise file of
// an F2 of 300 individuals with co-dominant markers and 3% missing scores.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench_support.h"
#include "frame/map_tool_driver.h"
#include "frame/map_tool_policy.h"
#include "twopoint/pair_store_writer.h"

namespace {

using gae::bench::WriteF2File;

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
