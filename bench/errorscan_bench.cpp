// Cost of the error scan on a map of 1000 markers and 300 individuals with 5% missing cells:
// an F2 (closed-form tables) and P1BC1 inbred lines (tables bred generation by generation).
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "errorscan/error_scan.h"

namespace {

void BM_ErrorScan(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const int individuals = 300, chromosomes = 10, per_chromosome = 100;
  std::mt19937 gen(7);
  const std::string letters = type == 7 ? "AHB" : "AB";
  std::vector<gae::ChromosomeRecord> chroms(chromosomes);
  for (auto& c : chroms)
    for (int k = 0; k < per_chromosome; ++k) {
      c.positions.push_back(1.5f * k);
      c.marker_names.push_back("m");
    }
  std::string matrix;
  for (int m = 0; m < chromosomes * per_chromosome; ++m) {
    char g = letters[gen() % letters.size()];
    for (int i = 0; i < individuals; ++i) {
      if (gen() % 10 == 0) g = letters[gen() % letters.size()];
      matrix += (gen() % 20 == 0) ? 'X' : g;
    }
  }
  const std::vector<int32_t> classes(chromosomes * per_chromosome, 1);
  for (auto _ : state) {
    std::string copy = matrix;
    gae::UniformStream random;
    benchmark::DoNotOptimize(gae::ErrorScan({10, type, 1}, individuals, chroms, classes,
                                            std::span<char>(copy.data(), copy.size()), random));
  }
}
BENCHMARK(BM_ErrorScan)->Arg(7)->Arg(5)->Unit(benchmark::kMillisecond);

}  // namespace
