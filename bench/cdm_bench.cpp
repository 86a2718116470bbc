// The clonal F1 check on big marker sets: reading a file of 300 progeny (3% missing) with a
// mix of categories, the counts and tests, and its pairwise file of seven words per pair on all
// cores.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

namespace {

// Markers spread evenly over ten chromosomes of 150 cM, both parents' meioses bred along each.
// Half the markers are ABCD, a sixth each A=B and C=D, the rest AB=CD.
std::string WriteClonalFile(int markers, int individuals) {
  const std::string path = "/tmp/gaengine-bench-clonal-" + std::to_string(markers) + ".cdm";
  std::FILE* f = std::fopen(path.c_str(), "w");
  std::fprintf(f, "1\n1\n1\n%d\n%d\n", markers, individuals);
  std::mt19937_64 rng(markers);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const int per_chromosome = (markers + 9) / 10;
  const double r = 0.5 * (1.0 - std::exp(-2.0 * (150.0 / per_chromosome) / 100.0));
  std::vector<std::vector<int>> homologue(individuals, std::vector<int>(2));
  const char* categories[] = {"ABCD", "ABCD", "ABCD", "A=B", "C=D", "AB=CD"};
  for (int m = 0; m < markers; ++m) {
    const int category = static_cast<int>(rng() % 6);
    std::fprintf(f, "%s M%06d", categories[category], m + 1);
    for (int i = 0; i < individuals; ++i) {
      for (int& h : homologue[i]) h = (m % per_chromosome == 0) ? (unit(rng) < 0.5) : (unit(rng) < r ? 1 - h : h);
      const int a = homologue[i][0], c = homologue[i][1];
      char type[3] = {"AB"[a], "CD"[c], '\0'};
      if (category == 3) type[0] = 'X';
      if (category == 4) type[1] = 'X';
      if (category == 5) {
        type[0] = a + c == 2 ? 'B' : 'A';
        type[1] = a + c == 0 ? 'A' : 'B';
      }
      std::fprintf(f, " %s", unit(rng) < 0.03 ? "XX" : type);
    }
    std::fprintf(f, "\n");
  }
  for (int m = 0; m < markers; ++m) std::fprintf(f, "M%06d 0\n", m + 1);
  std::fclose(f);
  return path;
}

// The whole check as a front end calls it: read, counts and tests, and the pairwise file.
void BM_CheckErrorCDM(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const std::string path = WriteClonalFile(markers, 300);
  const std::string lrd = gae::PairStoreName(path);
  std::vector<int> names(35 * markers), anchor(markers), category(markers);
  std::vector<std::vector<int>> sizes(12, std::vector<int>(markers));
  std::vector<float> chi(markers), p(markers);
  auto s = [&](int k) { return sizes[k].data(); };
  for (auto _ : state) {
    std::remove(lrd.c_str());
    gae::bench::QuietStdout quiet;
    int status = -1;
    CheckErrorCDM(static_cast<int>(path.size()), path.data(), markers, names.data(), anchor.data(), s(0), s(1),
                  s(2), s(3), s(4), s(5), s(6), s(7), s(8), s(9), s(10), s(11), category.data(), chi.data(),
                  p.data(), &status);
    if (status != 0) state.SkipWithError("check failed");
  }
  const double pairs = 0.5 * markers * (markers - 1.0);
  state.counters["pairs/s"] = benchmark::Counter(pairs, benchmark::Counter::kIsIterationInvariantRate);
  std::remove(lrd.c_str());
  std::remove(path.c_str());
  std::remove("CDM.log");
}
BENCHMARK(BM_CheckErrorCDM)->Arg(2000)->Unit(benchmark::kSecond)->Iterations(2)->UseRealTime();

}  // namespace
