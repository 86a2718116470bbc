// The map pipeline at scale, on simulated chromosomes of 150 cM and 300 individuals: time, peak
// memory and how close each map comes to the truth (worst rank correlation of a group, group
// lengths over the true length). One iteration each; run them one at a time for the memory.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "input/tool_codes.h"
#include "pipeline/map_pipeline.h"
#include "support/bred_data_sets.h"
#include "support/map_quality.h"
#include "twopoint/pair_store_writer.h"

namespace {

constexpr int kChromosomes = 10, kIndividuals = 300;
constexpr double kLengthCm = 150.0;

std::string Written(const std::string& path, const std::string& text) {
  std::FILE* f = std::fopen(path.c_str(), "w");
  std::fwrite(text.data(), 1, text.size(), f);
  std::fclose(f);
  return path;
}

// `copies` of the markers repeated under a new name, as a dense genotyping panel repeats
// markers that no individual tells apart.
std::string BiparentalFile(int type, int markers, int copies) {
  const int per = (markers - copies) / kChromosomes;
  gae::testing::BiparentalData data =
      gae::testing::SimulateBiparentalData(type, kChromosomes, per, kLengthCm / per, kIndividuals, 0.0, 0.02, 7);
  for (int c = 0; c < copies; ++c) {
    const size_t from = static_cast<size_t>(c) * data.names.size() / static_cast<size_t>(copies);
    data.names.push_back(data.names[from] + "d");
    data.letters.push_back(data.letters[from]);
  }
  return Written("/tmp/gaengine-scale-" + std::to_string(type) + "-" + std::to_string(markers) + ".map",
                 gae::testing::BiparentalInputFile(data));
}

std::string ClonalFile(int markers) {
  const int per = markers / kChromosomes;
  std::mt19937_64 rng(11);
  std::vector<gae::testing::SimulatedClonalMarker> all;
  std::vector<std::vector<std::string>> types;
  for (int c = 0; c < kChromosomes; ++c) {
    std::vector<gae::testing::SimulatedClonalMarker> chromosome;
    for (int k = 0; k < per; ++k) {
      char name[32];
      std::snprintf(name, sizeof name, "C%02dM%04d", c + 1, k + 1);
      chromosome.push_back({name, kLengthCm * k / per, static_cast<int>(1 + rng() % 4), static_cast<int>(rng() % 2),
                            static_cast<int>(rng() % 2)});
    }
    const auto t = gae::testing::SimulateClonalChromosome(chromosome, kIndividuals, 0.02, 100u + static_cast<uint64_t>(c));
    all.insert(all.end(), chromosome.begin(), chromosome.end());
    types.insert(types.end(), t.begin(), t.end());
  }
  std::vector<int> listing(all.size());
  for (size_t k = 0; k < all.size(); ++k) listing[k] = static_cast<int>(k);
  return Written("/tmp/gaengine-scale-clonal-" + std::to_string(markers) + ".cdm",
                 gae::testing::CdmInputFile(1, all, types, listing));
}

std::string EightWayRilFile(int markers) {
  const int per = markers / kChromosomes;
  std::mt19937_64 rng(13);
  std::vector<int32_t> patterns;
  for (int k = 0; k < 64; ++k) patterns.push_back(gae::testing::RandomPattern(8, rng));
  return Written("/tmp/gaengine-scale-8pril-" + std::to_string(markers) + ".plm",
                 gae::testing::PlmInputFile(gae::testing::SimulatePureLineData(4, kChromosomes, per, kLengthCm / per,
                                                                               kIndividuals, patterns, 0.02, 17)));
}

void RunAndJudge(benchmark::State& state, gae::MapPipelineSettings settings, double true_length_cm) {
  settings.threads = gae::PairStoreThreads();
  gae::MapPipelineRecord record;
  for (auto _ : state) {
    std::remove(gae::PairStoreName(settings.input_path).c_str());
    gae::UniformStream random;
    const gae::bench::QuietStdout quiet;
    record = gae::RunMapPipeline(settings, random);
  }
  std::vector<std::vector<std::string>> names;
  std::vector<std::vector<double>> positions;
  for (const gae::PipelineGroup& g : record.groups) {
    names.emplace_back();
    for (const int32_t m : g.markers) names.back().push_back(record.marker_names[static_cast<size_t>(m - 1)]);
    positions.emplace_back(g.positions_cm.begin(), g.positions_cm.end());
  }
  const gae::testing::MapQuality q = gae::testing::JudgeMap(names, positions, true_length_cm);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["groups"] = q.linkage_groups;
  state.counters["strays"] = q.strays;
  state.counters["worst_rank_corr"] = q.worst_rank_corr;
  state.counters["shortest"] = q.shortest;
  state.counters["longest"] = q.longest;
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  state.counters["cpu_s"] = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec);
  for (const auto& [stage, seconds] : record.stage_seconds) state.counters[stage] = seconds;
}

gae::MapPipelineSettings For(const std::string& path, int32_t tool_code) {
  gae::MapPipelineSettings s;
  s.input_path = path;
  s.tool_code = tool_code;
  if (tool_code == gae::kPureLineToolCode) s.ordering.tour = {2, 2, 1, 10, 2};
  return s;
}

void BM_ScaleDoubledHaploids(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0)), per = markers / kChromosomes;
  RunAndJudge(state, For(BiparentalFile(3, markers, 0), gae::kMapToolCode), kLengthCm * (per - 1) / per);
}
BENCHMARK(BM_ScaleDoubledHaploids)->Arg(2000)->Arg(20000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// A third of the markers copies of others.
void BM_ScaleF2WithCopies(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0)), per = (markers - markers / 3) / kChromosomes;
  RunAndJudge(state, For(BiparentalFile(7, markers, markers / 3), gae::kMapToolCode), kLengthCm * (per - 1) / per);
}
BENCHMARK(BM_ScaleF2WithCopies)->Arg(6000)->Arg(50000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

void BM_ScaleClonalF1(benchmark::State& state) {
  const int per = static_cast<int>(state.range(0)) / kChromosomes;
  RunAndJudge(state, For(ClonalFile(static_cast<int>(state.range(0))), gae::kClonalToolCode), kLengthCm * (per - 1) / per);
}
BENCHMARK(BM_ScaleClonalF1)->Arg(2000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

void BM_ScaleEightWayRil(benchmark::State& state) {
  const int per = static_cast<int>(state.range(0)) / kChromosomes;
  RunAndJudge(state, For(EightWayRilFile(static_cast<int>(state.range(0))), gae::kPureLineToolCode),
              kLengthCm * (per - 1) / per);
}
BENCHMARK(BM_ScaleEightWayRil)->Arg(2000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
