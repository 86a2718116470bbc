// The command's consensus ordering of a large group: three noisy maps of one chromosome, their
// mean distances computed by hand, ordered back into the true order.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

#include "engine/grouping.h"
#include "engine/map_state.h"
#include "pipeline/consensus_order.h"
#include "pipeline/group_layout.h"
#include "support/bred_groups.h"
#include "support/pair_store.h"
#include "twopoint/consensus_distances.h"

namespace gae {
namespace {

TEST(ConsensusOrder, ALargeGroupComesBackInTheOrderItsMapsShare) {
  const int32_t n = 240;
  ASSERT_GE(n, kBackboneFrom);
  std::mt19937_64 rng(21);
  std::normal_distribution<double> noise(0.0, 0.3);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  // Marker m at 0.5 m cM; each map holds about two thirds of them (map m % 3 always),
  // stretched and jittered.
  std::vector<std::vector<double>> place(3, std::vector<double>(n, NAN));
  for (size_t c = 0; c < place.size(); ++c) {
    const double stretch = 0.9 + 0.2 * unit(rng);
    for (int32_t m = 0; m < n; ++m)
      if (unit(rng) < 0.5 || static_cast<size_t>(m) % 3 == c) place[c][static_cast<size_t>(m)] = 0.5 * m * stretch + noise(rng);
  }
  testing::MemoryStore store(n);
  std::vector<int32_t> holding(static_cast<size_t>(n), 0);
  for (int32_t i = 1; i <= n; ++i) {
    for (const auto& map : place) holding[static_cast<size_t>(i - 1)] += !std::isnan(map[static_cast<size_t>(i - 1)]);
    for (int32_t j = 1; j < i; ++j) {
      double sum = 0;
      int both = 0;
      for (const auto& map : place)
        if (!std::isnan(map[static_cast<size_t>(i - 1)]) && !std::isnan(map[static_cast<size_t>(j - 1)]))
          sum += std::abs(map[static_cast<size_t>(i - 1)] - map[static_cast<size_t>(j - 1)]), ++both;
      ConsensusPairRecord(both > 0 ? static_cast<float>(sum / both) : 1000.0f, &store.First(i, j));
    }
  }
  MapModel map;
  AllocateMapState(map, n);
  std::fill(map.group.begin(), map.group.end(), 1);
  RebuildGroupModel(map);
  std::shuffle(map.order.begin(), map.order.end(), rng);
  UniformStream random;
  OrderConsensusGroups(store.Table(3), 2, holding.data(), map, random);
  std::vector<int32_t> placed;
  for (int32_t k = 0; k < n; ++k) placed.push_back(map.order[static_cast<size_t>(k)] - 1);
  EXPECT_GT(std::abs(testing::RankCorrelation(placed)), 0.99);
  EXPECT_EQ(map.map_state, kMapOrdered);
  for (int32_t k = 1; k < n; ++k) EXPECT_GE(map.position[static_cast<size_t>(k)], map.position[static_cast<size_t>(k - 1)]);
}

}  // namespace
}  // namespace gae
