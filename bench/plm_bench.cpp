// The pure-line pairwise file, and CheckErrorPLM from the input file on, on 2,000 markers by 300 lines, four and eight founders: lines
// bred through the funnel on ten chromosomes, markers with a mix of founder patterns (all
// founders apart, multi-allelic and bi-allelic), 3% missing scores.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "gaengine.h"
#include "support/bred_data_sets.h"
#include "twopoint/pair_store_writer.h"
#include "twopoint/plm_pairwise_file.h"

namespace {

const std::vector<int32_t>& Patterns(int founders) {
  // Each as a category field can spell it: a founder's digit first appears at its own place.
  static const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  static const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                             12222222, 12312312, 11335577, 12345671, 12121121};
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
BENCHMARK(BM_PlmPairwiseFile)->DenseRange(1, 4)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime();

// The whole check as a front end calls it: read and validate the file, the marker table, the
// pairwise file. Runs in a folder of its own, where the log and the store land.
void BM_CheckErrorPLM(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const int founders = type <= 2 ? 4 : 8;
  const gae::testing::PureLineData data =
      gae::testing::SimulatePureLineData(type, 10, 200, 0.75, 300, Patterns(founders), 0.03, 7);
  char dir[] = "/tmp/gaengine-bench-plm-XXXXXX";
  if (::mkdtemp(dir) == nullptr) return state.SkipWithError("no folder");
  const std::string file = std::string(dir) + "/bench.plm", lrd = std::string(dir) + "/bench.LRD";
  std::ofstream(file) << gae::testing::PlmInputFile(data);
  const int n = static_cast<int>(data.names.size());
  std::vector<int> names(35 * n), anchor(n), category(n);
  std::vector<std::vector<int>> s(9, std::vector<int>(n));
  std::vector<float> chi(n), p(n);
  char previous[4096];
  if (::getcwd(previous, sizeof previous) == nullptr || ::chdir(dir) != 0) return state.SkipWithError("no folder");
  for (auto _ : state) {
    std::remove(lrd.c_str());
    gae::bench::QuietStdout quiet;
    int status = -1;
    CheckErrorPLM(static_cast<int>(file.size()), file.data(), n, names.data(), anchor.data(), s[0].data(),
                  s[1].data(), s[2].data(), s[3].data(), s[4].data(), s[5].data(), s[6].data(),
                  s[7].data(), s[8].data(), category.data(), chi.data(), p.data(), &status);
    if (status != 0) state.SkipWithError("check failed");
  }
  if (::chdir(previous) != 0) state.SkipWithError("cannot go back");
  for (const std::string& f : {file, lrd, std::string(dir) + "/PLM.log"}) std::remove(f.c_str());
  ::rmdir(dir);
}
BENCHMARK(BM_CheckErrorPLM)->DenseRange(1, 4)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime()->MeasureProcessCPUTime();

}  // namespace
