// The whole group map on bred populations of known truth: frequencies and error rate come
// back, a shuffled order is put right without ever losing likelihood, a marker of noise leaves
// the group, and the suspect calls are the injected errors.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

#include "multipoint/chain_fit.h"
#include "multipoint/group_map.h"
#include "multipoint/order_polish.h"
#include "support/breeder.h"
#include "support/bred_groups.h"

namespace gae {
namespace {

using testing::BredGroup;
using testing::BredGroupPlan;
using testing::TrueOrder;

// A large population of each exact chain's design, with errors, mapped in its true order.
TEST(MultipointGroupMap, EmRecoversFrequenciesAndTheErrorRateOfBredPopulations) {
  struct Case {
    int type;
    double error;
    double dominant;
  };
  for (const Case& c : std::vector<Case>{{7, 0.02, 0.0}, {7, 0.01, 0.4}, {1, 0.03, 0.0}, {3, 0.01, 0.0}, {4, 0.02, 0.0}}) {
    SCOPED_TRACE(::testing::Message() << "type " << c.type << " error " << c.error);
    BredGroupPlan plan;
    plan.population_type = c.type;
    plan.positions_cm = {0, 3, 10, 12, 25, 26, 40};
    plan.individuals = 3000;
    plan.error_rate = c.error;
    plan.missing = 0.05;
    plan.dominant_share = c.dominant;
    const BredGroup bred = testing::BreedGroup(plan);
    MultipointOptions options;
    options.polish_order = false;
    const MultipointGroupMap map =
        MapGroupMultipoint(c.type, plan.individuals, bred.types, bred.categories, TrueOrder(7), options);
    ASSERT_EQ(map.order, TrueOrder(7));
    for (int k = 0; k < 6; ++k) {
      const double truth = testing::HaldaneFrequency(plan.positions_cm[k + 1] - plan.positions_cm[k]);
      // About four standard errors of a frequency from 3000 individuals.
      EXPECT_NEAR(map.interval_rf[k], truth, 0.012 + 0.1 * truth) << "interval " << k;
    }
    EXPECT_NEAR(map.error_rate, c.error, 0.25 * c.error);
  }
}

// Markers shuffled inside short stretches, in several designs: the polished order is the true
// one (either way round), its likelihood at least that of the start, and no call that the
// order explains is lost from the map.
TEST(MultipointGroupMap, PolishRestoresShuffledOrdersAndNeverLosesLikelihood) {
  for (int type : {7, 2, 4, 13}) {
    SCOPED_TRACE(type);
    BredGroupPlan plan;
    plan.population_type = type;
    plan.positions_cm = testing::EvenPositions(30, 2.5);
    plan.individuals = 250;
    plan.error_rate = 0.01;
    plan.missing = 0.05;
    plan.seed = 5 + type;
    const BredGroup bred = testing::BreedGroup(plan);
    std::vector<int32_t> start = TrueOrder(30);
    for (int k = 0; k + 3 <= 30; k += 5) std::swap(start[k], start[k + 2]);
    std::swap(start[10], start[13]);

    const GroupCalls calls = MakeGroupCalls(type, plan.individuals, bred.types, bred.categories);
    ChainState st;
    st.order = start;
    st.rf.assign(29, 0.05);
    st.error_rate = 0.01;
    const FitSettings fit;
    FitChain(calls, st, fit);
    const double before = st.log_likelihood;
    PolishOrder(calls, st, fit, PolishSettings{});
    EXPECT_GE(st.log_likelihood, before);
    EXPECT_GT(std::fabs(testing::RankCorrelation(st.order)), 0.995);
    // What polishing leaves is the likelihood of its order fitted afresh.
    ChainState fresh;
    fresh.order = st.order;
    fresh.rf = st.rf;
    fresh.error_rate = st.error_rate;
    EXPECT_NEAR(EvaluateChain(calls, fresh, nullptr), st.log_likelihood, 1e-6 * std::fabs(before));
  }
}

// Stretches listed the wrong way round, inside the chromosome and at both its ends, and a
// stretch listed a few places off: single markers cannot put them right without passing through
// worse orders, block moves can. Dominant and recessive markers among them.
TEST(MultipointGroupMap, PlantedBlockInversionsAreUndone) {
  BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(60, 2.0);
  plan.individuals = 200;
  plan.error_rate = 0.01;
  plan.missing = 0.05;
  plan.dominant_share = 0.2;
  plan.recessive_share = 0.2;
  plan.seed = 31;
  const BredGroup bred = testing::BreedGroup(plan);
  std::vector<int32_t> start = TrueOrder(60);
  std::reverse(start.begin(), start.begin() + 6);
  std::reverse(start.begin() + 20, start.begin() + 28);
  std::rotate(start.begin() + 35, start.begin() + 38, start.begin() + 40);
  std::reverse(start.begin() + 52, start.end());
  const GroupCalls calls = MakeGroupCalls(7, plan.individuals, bred.types, bred.categories);
  ChainState st;
  st.order = start;
  st.rf.assign(59, 0.05);
  st.error_rate = 0.01;
  const FitSettings fit;
  FitChain(calls, st, fit);
  const double before = st.log_likelihood;
  PolishOrder(calls, st, fit, PolishSettings{});
  EXPECT_GT(st.log_likelihood, before);
  std::vector<int32_t> order = st.order;
  if (order.front() > order.back()) std::reverse(order.begin(), order.end());
  // Markers 2 cM apart in 200 plants: the true order is the best by far.
  EXPECT_EQ(order, TrueOrder(60));
}

// Markers listed far from their place (out of reach of the local moves) go back beside their
// neighbours instead of leaving the group; a dominant and a recessive marker too.
TEST(MultipointGroupMap, StrayMarkersAreBroughtHome) {
  BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(40, 2.0);
  plan.individuals = 200;
  plan.error_rate = 0.01;
  plan.dominant_share = 0.3;
  plan.recessive_share = 0.3;
  plan.seed = 23;
  const BredGroup bred = testing::BreedGroup(plan);
  std::vector<int32_t> start;
  for (int k = 0; k < 40; ++k)
    if (k != 5 && k != 30) start.push_back(k);
  start.push_back(5);
  start.insert(start.begin(), 30);
  const MultipointGroupMap map = MapGroupMultipoint(7, plan.individuals, bred.types, bred.categories, start, {});
  EXPECT_TRUE(map.dropped.empty());
  ASSERT_EQ(map.order.size(), 40u);
  EXPECT_GT(std::fabs(testing::RankCorrelation(map.order)), 0.999);
}

// A marker of random calls in the middle links to nothing: it leaves the group, the rest keeps
// finite, sensible intervals.
TEST(MultipointGroupMap, MarkerOfNoiseIsDroppedAndNoIntervalIsUnlinked) {
  BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(8, 5.0);
  plan.individuals = 200;
  BredGroup bred = testing::BreedGroup(plan);
  testing::Breeder noise({0.5}, 99);
  for (int i = 0; i < plan.individuals; ++i) bred.types[4 * plan.individuals + i] = "AHB"[static_cast<int>(noise.Uniform() * 3)];
  const MultipointGroupMap map = MapGroupMultipoint(7, plan.individuals, bred.types, bred.categories, TrueOrder(8), {});
  EXPECT_EQ(map.dropped, std::vector<int32_t>{4});
  ASSERT_EQ(map.order.size(), 7u);
  for (double rf : map.interval_rf) EXPECT_LT(rf, 0.2);
  EXPECT_LT(map.positions_cm.back(), 1.2 * 35.0 * 1.0);
}

// 1% of the calls of a dense F2 made wrong: most suspects are injected errors and most
// injected errors are suspects.
TEST(MultipointGroupMap, SuspectCallsAreTheInjectedErrors) {
  BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(60, 1.5);
  plan.individuals = 200;
  plan.error_rate = 0.01;
  plan.missing = 0.05;
  plan.seed = 17;
  const BredGroup bred = testing::BreedGroup(plan);
  const MultipointGroupMap map = MapGroupMultipoint(7, plan.individuals, bred.types, bred.categories, TrueOrder(60), {});
  const long injected = std::count(bred.wrong.begin(), bred.wrong.end(), true);
  long hits = 0;
  for (const SuspectCall& s : map.suspects) hits += bred.wrong[s.marker * plan.individuals + s.individual];
  ASSERT_GT(injected, 0);
  EXPECT_GE(static_cast<double>(hits) / injected, 0.8);
  EXPECT_GE(static_cast<double>(hits) / std::max<std::size_t>(1, map.suspects.size()), 0.8);
}

// Arguments that do not fit together give an empty map marked as such, never a crash.
TEST(MultipointGroupMap, ArgumentsThatDoNotFitGiveNoMap) {
  const std::vector<char> types(6, 'A');
  const std::vector<int32_t> two = {1, 1};
  struct Case {
    int type, individuals;
    std::vector<int32_t> categories, order;
  };
  for (const Case& c : std::vector<Case>{{21, 3, two, {0, 1}}, {7, 4, two, {0, 1}}, {7, 3, two, {0, 2}},
                                         {7, 3, two, {1, 1}}, {7, 3, two, {-1}}, {7, 0, two, {0}}}) {
    const MultipointGroupMap map = MapGroupMultipoint(c.type, c.individuals, types, c.categories, c.order, {});
    EXPECT_FALSE(map.ok);
    EXPECT_TRUE(map.order.empty());
  }
  EXPECT_TRUE(MapGroupMultipoint(7, 3, types, two, {1}, {}).ok);
}

// Groups mapped on threads at once give what they give one after the other.
TEST(MultipointGroupMap, GroupsMapOnThreadsAsTheyDoAlone) {
  std::vector<BredGroup> groups;
  for (int type : {7, 4}) {
    BredGroupPlan plan;
    plan.population_type = type;
    plan.positions_cm = testing::EvenPositions(25, 3.0);
    plan.individuals = 120;
    plan.error_rate = 0.02;
    groups.push_back(testing::BreedGroup(plan));
  }
  std::vector<int32_t> start = TrueOrder(25);
  std::swap(start[3], start[6]);
  auto run = [&](int k) { return MapGroupMultipoint(k == 0 ? 7 : 4, 120, groups[k].types, groups[k].categories, start, {}); };
  MultipointGroupMap on_thread[2];
  std::thread a([&] { on_thread[0] = run(0); });
  std::thread b([&] { on_thread[1] = run(1); });
  a.join();
  b.join();
  for (int k = 0; k < 2; ++k) {
    const MultipointGroupMap alone = run(k);
    EXPECT_EQ(on_thread[k].order, alone.order);
    EXPECT_EQ(on_thread[k].interval_rf, alone.interval_rf);
    EXPECT_EQ(on_thread[k].log10_likelihood, alone.log10_likelihood);
  }
}

}  // namespace
}  // namespace gae
