// The pairwise files of the exact estimator, read from the input file and written on all
// cores, beside the same files of the front end's estimator: an F2 of 2,000 co-dominant
// markers by 300 plants, pure lines of four and eight founders and a clonal F1, 2,000 markers
// by 300 lines or progeny.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "support/bred_data_sets.h"
#include "twopoint/input_pair_file.h"
#include "twopoint/pair_store_writer.h"

namespace {

gae::PairEstimator EstimatorOf(int64_t arg) {
  return arg != 0 ? gae::PairEstimator::kExact : gae::PairEstimator::kFrontEnd;
}

void Run(benchmark::State& state, const std::string& path, int tool_code, gae::PairEstimator estimator) {
  const std::string lrd = gae::PairStoreName(path);
  for (auto _ : state) {
    std::remove(lrd.c_str());
    gae::bench::QuietStdout quiet;
    if (!gae::WriteInputPairFile(path, tool_code, estimator, gae::PairStoreThreads()))
      state.SkipWithError("not written");
  }
  state.SetLabel(std::string(gae::PairEstimatorName(estimator)));
  std::remove(lrd.c_str());
}

// Argument: 0 the front end's estimator, 1 the exact one.
void BM_F2PairFile(benchmark::State& state) {
  const std::string path = gae::bench::WriteF2File(2000, 300);
  Run(state, path, 104, EstimatorOf(state.range(0)));
  std::remove(path.c_str());
}
BENCHMARK(BM_F2PairFile)->Arg(0)->Arg(1)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime();

// Arguments: population type 1 to 4, estimator.
void BM_PureLinePairFile(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  static const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  static const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                             12222222, 12312312, 11335577, 12345671, 12121121};
  const gae::testing::PureLineData data =
      gae::testing::SimulatePureLineData(type, 10, 200, 0.75, 300, type <= 2 ? four : eight, 0.03, 7);
  const std::string path = "/tmp/gaengine-bench-exact.plm";
  {
    std::ofstream out(path);
    out << gae::testing::PlmInputFile(data);
  }
  Run(state, path, 30, EstimatorOf(state.range(1)));
  std::remove(path.c_str());
}
BENCHMARK(BM_PureLinePairFile)
    ->ArgsProduct({{1, 2, 3, 4}, {0, 1}})
    ->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime();

// A clonal F1 of ten chromosomes, the four categories in turn, both parents' phases mixed:
// argument 1 the number of markers, 2 the estimator. Ten thousand pairs of each category pair
// with a mixture in its classes (an ABCD marker beside an AB=CD one) take the profile search.
void BM_ClonalPairFile(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  std::vector<gae::testing::SimulatedClonalMarker> all;
  std::vector<std::vector<std::string>> types;
  for (int c = 0; c < 10; ++c) {
    std::vector<gae::testing::SimulatedClonalMarker> chromosome;
    for (int k = 0; k < markers / 10; ++k) {
      gae::testing::SimulatedClonalMarker m;
      char name[32];
      std::snprintf(name, sizeof name, "C%02dM%04d", c + 1, k + 1);
      m.name = name;
      m.position_cm = 150.0 * k / (markers / 10);
      m.category = 1 + (k * 7 + c) % 4;
      m.first_phase = (k / 3) % 2;
      m.second_phase = (k / 5) % 2;
      chromosome.push_back(m);
    }
    const auto t = gae::testing::SimulateClonalChromosome(chromosome, 300, 0.03, 100 + c);
    all.insert(all.end(), chromosome.begin(), chromosome.end());
    types.insert(types.end(), t.begin(), t.end());
  }
  std::vector<int> listing(all.size());
  for (std::size_t k = 0; k < listing.size(); ++k) listing[k] = static_cast<int>(k);
  const std::string path = "/tmp/gaengine-bench-exact.cdm";
  {
    std::ofstream out(path);
    out << gae::testing::CdmInputFile(1, all, types, listing);
  }
  Run(state, path, 20, EstimatorOf(state.range(1)));
  std::remove(path.c_str());
}
BENCHMARK(BM_ClonalPairFile)
    ->ArgsProduct({{2000}, {0, 1}})
    ->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime();

}  // namespace
