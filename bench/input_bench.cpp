// Reading speed of the list-directed reader on a large marker section.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "input/list_reader.h"

namespace {

std::string WriteMarkerFile(int markers, int individuals) {
  const std::string path = "/tmp/gaengine-bench-markers.txt";
  std::FILE* f = std::fopen(path.c_str(), "w");
  const char* tokens[] = {"A", "H", "B", "X"};
  for (int m = 0; m < markers; ++m) {
    std::fprintf(f, "M%06d", m);
    for (int i = 0; i < individuals; ++i) std::fprintf(f, " %s", tokens[(m * 7 + i * 13) % 4]);
    std::fprintf(f, "\n");
  }
  std::fclose(f);
  return path;
}

void BM_ReadMarkerRows(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const int individuals = 300;
  const std::string path = WriteMarkerFile(markers, individuals);
  for (auto _ : state) {
    gae::InputFile in;
    in.Open(path);
    std::string name, token;
    for (int m = 0; m < markers; ++m) {
      gae::ListRead read(in);
      read.Text(name, 35);
      for (int i = 0; i < individuals; ++i) read.Text(token, 2);
    }
    benchmark::DoNotOptimize(token);
  }
  state.counters["tokens/s"] = benchmark::Counter(
      static_cast<double>(markers) * individuals, benchmark::Counter::kIsIterationInvariantRate);
  std::remove(path.c_str());
}
BENCHMARK(BM_ReadMarkerRows)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
