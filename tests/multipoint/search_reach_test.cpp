// How far the order search reaches: a marker tried in a gap against the literal chain with it
// there, dominant and recessive markers placed around a co-dominant frame against every
// placement, a block far from its place carried home, and lengths against the truth.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "multipoint/chain_fit.h"
#include "multipoint/far_blocks.h"
#include "multipoint/gap_score.h"
#include "multipoint/group_map.h"
#include "support/bred_groups.h"
#include "support/breeder.h"

namespace gae {
namespace {

using testing::BredGroup;
using testing::BredGroupPlan;
using testing::TrueOrder;

// The chain evaluated at given frequencies (no fitting).
double Evaluated(const GroupCalls& calls, std::vector<int32_t> order, std::vector<double> rf, double error) {
  ChainState st;
  st.order = std::move(order);
  st.rf = std::move(rf);
  st.error_rate = error;
  return EvaluateChain(calls, st, nullptr);
}

double Fitted(const GroupCalls& calls, const std::vector<int32_t>& order) {
  ChainState st;
  st.order = order;
  st.rf.assign(order.size() - 1, 0.05);
  st.error_rate = 0.01;
  FitChain(calls, st, FitSettings{});
  return st.log_likelihood;
}

// Differences between gaps are differences between whole chains with the marker put there, its
// gap halved on each side (past an end, half of 0.2 off the last marker), whatever its kind.
TEST(SearchReach, GapScoresDifferAsTheWholeChainsWithTheMarkerThere) {
  BredGroupPlan plan;
  plan.positions_cm = {0, 6, 9, 20, 24, 31, 40};
  plan.individuals = 60;
  plan.error_rate = 0.03;
  plan.missing = 0.1;
  plan.dominant_share = plan.recessive_share = 0.3;
  plan.seed = 4;
  const BredGroup bred = testing::BreedGroup(plan);
  const GroupCalls calls = MakeGroupCalls(7, plan.individuals, bred.types, bred.categories);
  ChainState st;
  st.order = {0, 1, 2, 4, 5, 6};  // marker 3 is the one tried
  st.rf = {0.06, 0.03, 0.2, 0.07, 0.09};
  st.error_rate = 0.03;
  EvaluateChain(calls, st, nullptr);
  const auto half = [](double r) { return 0.5 * (1 - std::sqrt(1 - 2 * r)); };
  std::vector<double> fast, literal;
  for (int q = -1; q < 6; ++q) {
    std::vector<int32_t> order = st.order;
    std::vector<double> rf = st.rf;
    order.insert(order.begin() + q + 1, 3);
    if (q < 0) rf.insert(rf.begin(), half(0.2));
    else if (q == 5) rf.push_back(half(0.2));
    else {
      rf[q] = half(st.rf[q]);
      rf.insert(rf.begin() + q, half(st.rf[q]));
    }
    fast.push_back(GapScore(calls, st, 3, q));
    literal.push_back(Evaluated(calls, order, rf, st.error_rate));
  }
  for (std::size_t k = 1; k < fast.size(); ++k) EXPECT_NEAR(fast[k] - fast[0], literal[k] - literal[0], 1e-8) << k;
}

// Co-dominant markers listed in their order with the dominant and recessive ones all piled at
// one end: the map is at least as likely as the best of every placement of those markers
// around the true frame, fitted one by one.
TEST(SearchReach, DominantAndRecessiveMarkersFindTheirBestPlaces) {
  BredGroupPlan plan;
  plan.positions_cm = {0, 5, 10, 15, 20, 25, 30};
  plan.individuals = 150;
  plan.error_rate = 0.01;
  plan.seed = 12;
  BredGroup bred = testing::BreedGroup(plan);
  // Markers 1 and 4 dominant, 2 recessive: fold their calls as such a marker shows them.
  for (int m : {1, 2, 4}) {
    bred.categories[m] = m == 2 ? 10 : 12;
    for (int i = 0; i < plan.individuals; ++i) {
      char& c = bred.types[m * plan.individuals + i];
      if (m == 2 && (c == 'H' || c == 'B')) c = 'R';
      if (m != 2 && (c == 'A' || c == 'H')) c = 'D';
    }
  }
  const GroupCalls calls = MakeGroupCalls(7, plan.individuals, bred.types, bred.categories);
  const std::vector<int32_t> frame = {0, 3, 5, 6};
  double best = -INFINITY;
  std::vector<int32_t> others = {1, 2, 4};
  do {
    for (int a = 0; a <= 4; ++a)
      for (int b = a; b <= 4; ++b)
        for (int c = b; c <= 4; ++c) {
          std::vector<int32_t> order = frame;
          order.insert(order.begin() + c, others[2]);
          order.insert(order.begin() + b, others[1]);
          order.insert(order.begin() + a, others[0]);
          best = std::max(best, Fitted(calls, order));
        }
  } while (std::next_permutation(others.begin(), others.end()));
  const MultipointGroupMap map =
      MapGroupMultipoint(7, plan.individuals, bred.types, bred.categories, {0, 3, 5, 6, 4, 2, 1}, {});
  ASSERT_EQ(map.order.size(), 7u);
  EXPECT_GE(map.log10_likelihood * std::log(10.0), best - 1e-3);
}

// The same at scale: a third of the markers dominant, a third recessive, all of them shuffled
// and listed after the co-dominant ones; single-marker moves alone leave this one misordered.
TEST(SearchReach, ShuffledDominantAndRecessiveMarkersGoHome) {
  BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(45, 2.0);
  plan.individuals = 150;
  plan.error_rate = 0.01;
  plan.dominant_share = plan.recessive_share = 1.0 / 3;
  plan.seed = 2;
  const BredGroup bred = testing::BreedGroup(plan);
  std::vector<int32_t> start, rest;
  for (int k = 0; k < 45; ++k) (bred.categories[k] == 1 ? start : rest).push_back(k);
  std::mt19937 rng(2);
  std::shuffle(rest.begin(), rest.end(), rng);
  start.insert(start.end(), rest.begin(), rest.end());
  const MultipointGroupMap map = MapGroupMultipoint(7, plan.individuals, bred.types, bred.categories, start, {});
  ASSERT_EQ(map.order.size(), 45u);
  EXPECT_GT(std::fabs(testing::RankCorrelation(map.order)), 0.998);
}

// A block of three carried ten places off and turned over, in a backcross and in an F2 with
// dominant markers: the far carries put it back, where the local polish's reach ends short.
TEST(SearchReach, AFarBlockIsCarriedHome) {
  for (const int type : {1, 7}) {
    SCOPED_TRACE(type);
    BredGroupPlan plan;
    plan.population_type = type;
    plan.positions_cm = testing::EvenPositions(30, 2.0);
    plan.individuals = 200;
    plan.error_rate = 0.01;
    plan.dominant_share = type == 7 ? 0.2 : 0.0;
    plan.seed = 8;
    const BredGroup bred = testing::BreedGroup(plan);
    const GroupCalls calls = MakeGroupCalls(type, plan.individuals, bred.types, bred.categories);
    std::vector<int32_t> start = TrueOrder(30);
    start.erase(start.begin() + 20, start.begin() + 23);
    start.insert(start.begin() + 9, {22, 21, 20});
    ChainState st;
    st.order = start;
    st.rf.assign(29, 0.05);
    st.error_rate = 0.01;
    const FitSettings fit;
    FitChain(calls, st, fit);
    const double before = st.log_likelihood;
    EXPECT_GE(CarryFarBlocks(calls, st, fit, FarBlockSettings{}), 1);
    EXPECT_GT(st.log_likelihood, before);
    std::vector<int32_t> order = st.order;
    if (order.front() > order.back()) std::reverse(order.begin(), order.end());
    EXPECT_EQ(order, TrueOrder(30));
  }
}

// Large populations of each exact design with 1% and 3% errors, mapped in their true order
// with the error rate estimated: the whole length within 5% of the truth (Haldane's function,
// as the breeder crosses over).
TEST(SearchReach, LengthsMatchTheTruthWithErrors) {
  for (const int type : {1, 4, 7})
    for (const double error : {0.01, 0.03}) {
      SCOPED_TRACE(::testing::Message() << "type " << type << " error " << error);
      BredGroupPlan plan;
      plan.population_type = type;
      plan.positions_cm = testing::EvenPositions(30, 1.0);
      plan.individuals = 3000;
      plan.error_rate = error;
      plan.missing = 0.05;
      plan.seed = 2;
      const BredGroup bred = testing::BreedGroup(plan);
      MultipointOptions options;
      options.polish_order = false;
      options.mapping_function = 2;
      const MultipointGroupMap map =
          MapGroupMultipoint(type, plan.individuals, bred.types, bred.categories, TrueOrder(30), options);
      ASSERT_EQ(map.order.size(), 30u);
      EXPECT_NEAR(map.positions_cm.back() / 29.0, 1.0, 0.05);
    }
}

}  // namespace
}  // namespace gae
