// Reading and checking a large QTL input file: map, marker and phenotype sections.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "frame/process_state.h"
#include "input/qtl_file_reader.h"

namespace {

// A RIL file of `markers` markers on ten chromosomes, 300 lines and three traits.
std::string WriteBipFile(int markers) {
  const int lines = 300, chromosomes = 10, per = markers / chromosomes;
  const std::string path = "/tmp/gaengine-bench-" + std::to_string(markers) + ".bip";
  std::FILE* f = std::fopen(path.c_str(), "w");
  std::fprintf(f, "1\n4\n1\n2\n1\n%d\n%d\n3\n", chromosomes, lines);
  for (int c = 1; c <= chromosomes; ++c) std::fprintf(f, "Chr%d %d\n", c, per);
  for (int c = 1; c <= chromosomes; ++c) {
    for (int m = 0; m < per; ++m) std::fprintf(f, "M%d_%d %d %.1f\n", c, m, c, m * 0.5);
  }
  const char* tokens[] = {"A", "B", "A", "B", "X"};
  for (int c = 1; c <= chromosomes; ++c) {
    for (int m = 0; m < per; ++m) {
      std::fprintf(f, "M%d_%d", c, m);
      for (int i = 0; i < lines; ++i) std::fprintf(f, " %s", tokens[(m * 7 + i * 13 + c) % 5]);
      std::fprintf(f, "\n");
    }
  }
  for (int t = 1; t <= 3; ++t) {
    std::fprintf(f, "Trait%d", t);
    for (int i = 0; i < lines; ++i) std::fprintf(f, "\t%.2f", 50.0 + (i * 37 % 101) * 0.1);
    std::fprintf(f, "\n");
  }
  std::fclose(f);
  return path;
}

void BM_ReadBipFile(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const std::string path = WriteBipFile(markers);
  for (auto _ : state) {
    gae::InputFile in;
    in.Open(path);
    gae::QtlFileData data;
    gae::ReadQtlFile(in, gae::QtlTool::kBIP, data, gae::Process().missing_word_seen);
    if (gae::MessageCode() != 0) state.SkipWithError("the generated file did not pass");
    benchmark::DoNotOptimize(data.markers.types.data());
  }
  state.counters["genotypes/s"] = benchmark::Counter(
      static_cast<double>(markers) * 300, benchmark::Counter::kIsIterationInvariantRate);
  std::remove(path.c_str());
}
BENCHMARK(BM_ReadBipFile)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
