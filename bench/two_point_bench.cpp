// Cost of one marker pair in the two-point engine: one million random tables per population
// type, each estimated as the pair store does (both phases, guarded).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <vector>

#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace {

constexpr int kTables = 1 << 20;

// A small xorshift generator: the tables only need to vary, not to be of statistical quality.
struct Scramble {
  uint64_t state = 0x9E3779B97F4A7C15ull;
  double Next() {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<double>(state >> 11) * 0x1.0p-53;
  }
};

struct Table {
  int code;
  float cells[9];
};

// Tables of 50 to 250 individuals around the expected counts at a random r in 0..0.5, with
// the counts rounded up or down at random; the iterated types cycle through all pair codes.
std::vector<Table> RandomTables(int type) {
  const int codes[9] = {11, 112, 121, 110, 101, 1212, 1210, 1012, 1010};
  const bool multi = type == 7 || type == 8 || (type >= 13 && type <= 16);
  std::vector<Table> tables(kTables);
  Scramble rng;
  const float no_cells[9] = {};
  for (int i = 0; i < kTables; ++i) {
    Table& t = tables[i];
    t.code = multi ? codes[i % 9] : 11;
    double p[9] = {};
    gae::TwoPointModel<double>(type, t.code, no_cells, 0.5 * rng.Next(), p, nullptr, nullptr);
    const double n = 50 + 200 * rng.Next();
    for (int k = 0; k < 9; ++k) t.cells[k] = static_cast<float>(std::floor(p[k] * n + rng.Next()));
  }
  return tables;
}

void BM_TwoPointPairs(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  const std::vector<Table> tables = RandomTables(type);
  double seconds = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    float checksum = 0;
    for (const Table& t : tables) {
      float rec = 0, lod = 0;
      gae::TwoPointGuarded(type, t.code, t.cells, rec, lod);
      checksum += lod;
    }
    benchmark::DoNotOptimize(checksum);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  state.counters["ns/pair"] = seconds * 1e9 / (static_cast<double>(kTables) * state.iterations());
}
BENCHMARK(BM_TwoPointPairs)->DenseRange(1, 20)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
