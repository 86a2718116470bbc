// The pure-line pairwise file on 2,000 markers by 300 lines, four and eight founders: lines
// bred through the funnel on ten chromosomes, markers with a mix of founder patterns (all
// founders apart, multi-allelic and bi-allelic), 3% missing scores.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench_support.h"
#include "support/pure_line_simulation.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/plm_pairwise_file.h"

namespace {

const std::vector<int32_t>& Patterns(int founders) {
  static const std::vector<int32_t> four = {1234, 1212, 1233, 1123, 1221, 1232, 1222, 1231};
  static const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111112, 12211221,
                                             12222222, 12312312, 11223344, 12345671, 12121121};
  return founders == 4 ? four : eight;
}

void BM_PlmPairwiseFile(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const int founders = type <= 2 ? 4 : 8;
  const gae::testing::PureLineData data =
      gae::testing::SimulatePureLineData(type, 10, 200, 0.75, 300, Patterns(founders), 0.03, 7);
  std::vector<char> types;
  for (const std::string& row : data.letters) types.insert(types.end(), row.begin(), row.end());
  gae::PureLineMarkers markers;
  markers.population_type = type;
  markers.num_markers = static_cast<int64_t>(data.names.size());
  markers.num_individuals = 300;
  markers.patterns = data.patterns.data();
  markers.types = types.data();
  const std::string lrd = "/tmp/gaengine-bench-plm.LRD";
  for (auto _ : state) {
    std::remove(lrd.c_str());
    gae::bench::QuietStdout quiet;
    if (!gae::PLMPairwiseFile(lrd, markers, gae::PairStoreThreads())) state.SkipWithError("not written");
  }
  std::remove(lrd.c_str());
}
BENCHMARK(BM_PlmPairwiseFile)->DenseRange(1, 4)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
