#include "engine/edit_test_map.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "twopoint/mapping_function.h"

namespace gae::testing {

PairTable TestMap::Table() const {
  return PairTable{records.data(), static_cast<int64_t>(records.size() / 2), 2, mapping_function};
}

GroupModelArrays TestMap::Arrays() {
  return GroupModelArrays{static_cast<int32_t>(order.size()), static_cast<int32_t>(group_size.size()),
                          num_mapped, num_unlinked, num_deleted, group_size.data(), group_status.data(),
                          group.data(), order.data(), position.data()};
}

void TestMap::TakeCounts(const GroupModelArrays& model) {
  num_mapped = model.num_mapped;
  num_unlinked = model.num_unlinked;
  num_deleted = model.num_deleted;
}

TestMap LayOut(const std::vector<MarkerSpot>& spots, int32_t mapping_function,
               const std::vector<std::vector<int32_t>>& groups,
               const std::vector<int32_t>& statuses, const std::vector<int32_t>& unlinked,
               const std::vector<int32_t>& deleted) {
  TestMap map;
  map.mapping_function = mapping_function;
  const int n = static_cast<int>(spots.size());
  for (int i = 2; i <= n; ++i) {
    for (int j = 1; j < i; ++j) {
      const MarkerSpot& a = spots[i - 1];
      const MarkerSpot& b = spots[j - 1];
      const bool linked = a.chromosome != 0 && a.chromosome == b.chromosome;
      const float r = linked ? MapDistanceToRec(mapping_function, std::fabs(a.x - b.x)) : 0.5f;
      // The first word is deliberately no distance at all: an edit that read it would show.
      map.records.push_back(-40.0f * (0.5f - r) - 3.0f);
      map.records.push_back(r);
    }
  }
  map.group.assign(n, 0);
  const PairTable table = map.Table();
  for (size_t g = 0; g < groups.size(); ++g) {
    map.group_size.push_back(static_cast<int32_t>(groups[g].size()));
    map.group_status.push_back(statuses[g]);
    for (size_t k = 0; k < groups[g].size(); ++k) {
      const int32_t m = groups[g][k];
      map.group[m - 1] = static_cast<int32_t>(g + 1);
      const bool measured = k > 0 && statuses[g] != kGroupGrouped;
      map.position.push_back(measured ? map.position.back() + table.Distance(groups[g][k - 1], m) : 0.0f);
      map.order.push_back(m);
    }
    map.num_mapped += static_cast<int32_t>(groups[g].size());
  }
  for (int32_t m : unlinked) map.order.push_back(m);
  for (int32_t m : deleted) {
    map.order.push_back(m);
    map.group[m - 1] = kDeletedGroup;
  }
  map.position.resize(map.order.size(), 0.0f);
  map.num_unlinked = static_cast<int32_t>(unlinked.size());
  map.num_deleted = static_cast<int32_t>(deleted.size());
  return map;
}

TestMap RandomMappedExample(std::mt19937& rng) {
  auto uniform = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  const int num_groups = uniform(2, 5);
  std::vector<int> sizes;
  for (int g = 0; g < num_groups; ++g) sizes.push_back(uniform(0, 5) == 0 ? 0 : uniform(1, 12));
  const int num_unlinked = uniform(0, 4);
  const int num_deleted = uniform(0, 3);
  const int n = std::accumulate(sizes.begin(), sizes.end(), 0) + num_unlinked + num_deleted;
  std::vector<int32_t> numbers(n);
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), rng);
  std::vector<MarkerSpot> spots(n);
  std::vector<std::vector<int32_t>> groups(num_groups);
  std::vector<int32_t> statuses, unlinked, deleted;
  int next = 0;
  for (int g = 0; g < num_groups; ++g) {
    const float length = static_cast<float>(uniform(20, 160));
    for (int k = 0; k < sizes[g]; ++k) {
      const int32_t m = numbers[next++];
      spots[m - 1] = {g + 1, std::uniform_real_distribution<float>(0.0f, length)(rng)};
      groups[g].push_back(m);
    }
    const int32_t status = uniform(1, 4) == 1 ? 1 : uniform(2, 3);
    statuses.push_back(status);
    auto by_place = [&](int32_t a, int32_t b) { return spots[a - 1].x < spots[b - 1].x; };
    if (status == kGroupGrouped) std::sort(groups[g].begin(), groups[g].end());
    else std::sort(groups[g].begin(), groups[g].end(), by_place);
  }
  for (int k = 0; k < num_unlinked; ++k) unlinked.push_back(numbers[next++]);
  for (int k = 0; k < num_deleted; ++k) deleted.push_back(numbers[next++]);
  return LayOut(spots, uniform(1, 3), groups, statuses, unlinked, deleted);
}

EditRequest RandomEdit(std::mt19937& rng, const GroupModelArrays& model) {
  auto uniform = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  EditRequest edit;
  const int kind = uniform(1, 10);
  if (kind <= 7) {
    edit.kind = EditRequest::kMarkerMove;
    edit.a = uniform(0, model.num_markers + 1);
    edit.b = uniform(-1, model.num_groups + 2);
    edit.c = uniform(1, 12) == 1 ? 0 : uniform(1, 4);
  } else if (kind <= 9) {
    edit.kind = EditRequest::kGroupMove;
    edit.a = uniform(0, model.num_groups + 1);
    edit.b = uniform(0, 3);
  } else {
    edit.kind = EditRequest::kGroupReverse;
    edit.a = uniform(1, model.num_groups);
  }
  return edit;
}

::testing::AssertionResult LayoutHolds(const GroupModelArrays& model) {
  const int32_t n = model.num_markers;
  if (model.num_mapped < 0 || model.num_unlinked < 0 || model.num_deleted < 0 ||
      model.num_mapped + model.num_unlinked + model.num_deleted != n) {
    return ::testing::AssertionFailure() << "block counts " << model.num_mapped << " + " << model.num_unlinked
                                         << " + " << model.num_deleted << " against " << n << " markers";
  }
  std::vector<int> seen(n + 1, 0);
  for (int32_t i = 0; i < n; ++i) {
    const int32_t m = model.order[i];
    if (m < 1 || m > n || seen[m]++ != 0) return ::testing::AssertionFailure() << "order entry " << i + 1 << " is " << m;
  }
  // The block each index belongs to, as `Group` must name it.
  std::vector<int32_t> block_of(n, 0);
  int32_t start = 0;
  for (int32_t g = 1; g <= model.num_groups; ++g) {
    const int32_t size = model.group_size[g - 1];
    if (size < 0 || start + size > model.num_mapped) {
      return ::testing::AssertionFailure() << "group " << g << " of size " << size << " overruns the mapped block";
    }
    const bool ordered = model.group_status[g - 1] != kGroupGrouped;
    for (int32_t k = 0; k < size; ++k) {
      block_of[start + k] = g;
      const float pos = model.position[start + k];
      const float previous = k == 0 ? 0.0f : model.position[start + k - 1];
      if (ordered ? pos < previous || (k == 0 && pos != 0.0f) : pos != 0.0f) {
        return ::testing::AssertionFailure() << "group " << g << " place " << k + 1 << " has position " << pos;
      }
    }
    start += size;
  }
  if (start != model.num_mapped) return ::testing::AssertionFailure() << "group sizes sum to " << start;
  for (int32_t i = model.num_mapped; i < n; ++i) {
    block_of[i] = i < model.num_mapped + model.num_unlinked ? 0 : kDeletedGroup;
    if (model.position[i] != 0.0f) return ::testing::AssertionFailure() << "unplaced entry " << i + 1 << " has a position";
  }
  for (int32_t i = 0; i < n; ++i) {
    if (model.group[model.order[i] - 1] != block_of[i]) {
      return ::testing::AssertionFailure() << "marker " << model.order[i] << " at " << i + 1 << " has group "
                                           << model.group[model.order[i] - 1] << " but lies in block " << block_of[i];
    }
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult GapsMatchTable(const GroupModelArrays& model, const PairTable& table) {
  int32_t start = 0;
  for (int32_t g = 1; g <= model.num_groups; ++g) {
    const int32_t size = model.group_size[g - 1];
    if (model.group_status[g - 1] != kGroupGrouped) {
      for (int32_t k = start + 1; k < start + size; ++k) {
        const float gap = model.position[k] - model.position[k - 1];
        const float expected = table.Distance(model.order[k - 1], model.order[k]);
        // 32-bit positions: allow the rounding of a few dozen patches at this magnitude.
        if (std::fabs(gap - expected) > 1e-4f * (1.0f + model.position[k])) {
          return ::testing::AssertionFailure()
                 << "group " << g << ": gap " << gap << " between markers " << model.order[k - 1]
                 << " and " << model.order[k] << ", stored distance " << expected;
        }
      }
    }
    start += size;
  }
  return ::testing::AssertionSuccess();
}

}  // namespace gae::testing
