// Cost of the best-place search, the one hand edit that grows faster than the group: the
// marker walks through all n places and every step rebuilds the group's n positions.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "engine/edit_in_group.h"
#include "vocabulary/pair_index.h"
#include "twopoint/mapping_function.h"
#include "twopoint/pair_table.h"

namespace {

void BM_BestPlaceFromTheTop(benchmark::State& state) {
  const int32_t n = static_cast<int32_t>(state.range(0));
  // Markers 1 cM apart along one chromosome, Kosambi distances.
  std::vector<float> records(2 * gae::PairCount(n));
  for (int64_t i = 2; i <= n; ++i) {
    for (int64_t j = 1; j < i; ++j) {
      const int64_t k = gae::GroupPairIndex(i, j);
      records[2 * (k - 1)] = -10.0f;
      records[2 * (k - 1) + 1] = gae::MapDistanceToRec(1, static_cast<float>(i - j));
    }
  }
  gae::PairTable table{records.data(), gae::PairCount(n), 2, 1};
  // The last marker sits first: its best place is the far end of the group.
  std::vector<int32_t> start_order(n);
  std::vector<float> start_position(n, 0.0f);
  start_order[0] = n;
  for (int32_t i = 1; i < n; ++i) start_order[i] = i;
  for (int32_t i = 1; i < n; ++i) {
    start_position[i] = start_position[i - 1] + table.Distance(start_order[i - 1], start_order[i]);
  }
  for (auto _ : state) {
    std::vector<int32_t> order = start_order;
    std::vector<float> position = start_position;
    gae::BestPlace(1, n, 2, order.data(), position.data(), &table);
    benchmark::DoNotOptimize(order.data());
  }
  state.SetComplexityN(n);
}
BENCHMARK(BM_BestPlaceFromTheTop)->Arg(250)->Arg(1000)->Arg(2000)->Complexity();

}  // namespace
