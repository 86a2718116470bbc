// Marker binning of 10,000 markers by 300 F2 plants, and SNP conversion of the same size.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "prep/binning.h"
#include "prep/distortion.h"
#include "prep/snp_conversion.h"

namespace {

// Ten chromosomes of 1000 markers 0.1 cM apart: neighbours often share every genotype, so the
// set holds many redundant markers, as a dense SNP array does. 3% of the scores are missing.
std::string DenseF2(int markers, int plants, double switch_chance = 0.001) {
  std::mt19937_64 rng(2024);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  std::string letters(static_cast<std::size_t>(markers) * plants, 'X');
  const int per_chromosome = markers / 10;
  for (int p = 0; p < plants; ++p) {
    int g1 = 0, g2 = 0;
    for (int m = 0; m < markers; ++m) {
      if (m % per_chromosome == 0) g1 = u(rng) < 0.5, g2 = u(rng) < 0.5;
      else {
        if (u(rng) < switch_chance) g1 = 1 - g1;
        if (u(rng) < switch_chance) g2 = 1 - g2;
      }
      const char g = g1 + g2 == 0 ? 'A' : g1 + g2 == 1 ? 'H' : 'B';
      letters[static_cast<std::size_t>(m) * plants + p] = u(rng) < 0.03 ? 'X' : g;
    }
  }
  return letters;
}

void BM_BinMarkers(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0)), plants = 300;
  // Arg 1: 0 the dense array above; 1 unlinked markers, no two alike (every pair compared).
  const std::string letters = DenseF2(markers, plants, state.range(1) ? 0.5 : 0.001);
  const std::vector<int32_t> categories(markers, 1);
  std::size_t bins = 0;
  for (auto _ : state) {
    const std::vector<float> p = gae::SegregationPValues(2, 7, categories, letters.data(), plants);
    gae::BinningOptions options;
    options.max_missing_rate = 0.1f;
    options.min_distortion_p = 0.001f;
    const gae::BinningResult r =
        gae::BinMarkers({markers, plants, letters.data(), categories}, p, options);
    bins = r.bins.size();
  }
  state.counters["bins"] = static_cast<double>(bins);
}
BENCHMARK(BM_BinMarkers)->Args({10000, 0})->Args({10000, 1})->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_ConvertSnp(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0)), plants = 300;
  const std::string letters = DenseF2(markers, plants);
  gae::SnpInput input;
  input.population_type = 7;
  input.num_markers = markers;
  input.population_size = plants;
  input.names.assign(markers, "M");
  for (int m = 0; m < markers; ++m) {
    input.parent_calls.push_back(0);  // AA
    input.parent_calls.push_back(1);  // TT
  }
  for (char c : letters) input.progeny_calls.push_back(c == 'A' ? 0 : c == 'B' ? 1 : c == 'H' ? 4 : 10);
  for (auto _ : state) benchmark::DoNotOptimize(gae::ConvertSnpInput(input));
}
BENCHMARK(BM_ConvertSnp)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
