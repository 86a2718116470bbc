// The library's map pipeline from a MAP file to its reports: a bred F2 of five chromosomes of
// 150 cM, 300 plants, 2% missing calls. The pairs are estimated afresh in every iteration.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench_support.h"
#include "pipeline/map_pipeline.h"
#include "support/bred_data_sets.h"
#include "twopoint/pair_store_writer.h"

namespace {

std::string WriteBredF2(int markers) {
  const int per_chromosome = markers / 5, individuals = 300;
  std::vector<gae::testing::SimulatedMarker> all;
  std::vector<std::string> genotypes;
  for (int c = 1; c <= 5; ++c) {
    std::vector<gae::testing::SimulatedMarker> chromosome;
    for (int k = 0; k < per_chromosome; ++k) {
      char name[32];
      std::snprintf(name, sizeof name, "C%dM%05d", c, k + 1);
      chromosome.push_back({name, 150.0 * k / per_chromosome});
    }
    const std::vector<std::string> g = gae::testing::SimulateF2Chromosome(chromosome, individuals, 0.02, 50u + c);
    all.insert(all.end(), chromosome.begin(), chromosome.end());
    genotypes.insert(genotypes.end(), g.begin(), g.end());
  }
  std::vector<int> listing;
  for (int k = 0; k < static_cast<int>(all.size()); ++k) listing.push_back(k);
  const std::string path = "/tmp/gaengine-bench-pipeline-" + std::to_string(markers) + ".map";
  std::FILE* f = std::fopen(path.c_str(), "w");
  const std::string text = gae::testing::MapInputFile(all, genotypes, listing, individuals);
  std::fwrite(text.data(), 1, text.size(), f);
  std::fclose(f);
  return path;
}

void BM_MapPipelineBredF2(benchmark::State& state) {
  gae::MapPipelineSettings settings;
  settings.input_path = WriteBredF2(static_cast<int>(state.range(0)));
  settings.threads = gae::PairStoreThreads();
  for (auto _ : state) {
    std::remove(gae::PairStoreName(settings.input_path).c_str());
    gae::UniformStream random;
    const gae::bench::QuietStdout quiet;
    const gae::MapPipelineRecord record = gae::RunMapPipeline(settings, random);
    benchmark::DoNotOptimize(record.groups.size());
  }
}
BENCHMARK(BM_MapPipelineBredF2)->Arg(2000)->Arg(10000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
