// Grouping by threshold costs O(n^2) pair lookups: each free marker remembers its best grouped
// partner, and when a marker is placed, only the values to that marker are read to update the
// others. The choice is the one of the plain rule that, at every step, scans every free marker
// against every grouped one in the order (free marker, group, member).
#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "engine/grouping.h"

namespace gae {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Partner {
  float value = kInfinity;
  int32_t group = 0;
  int32_t member = 0;
  // Keeps the earlier in visiting order among equal values: lower group, then lower member.
  void Consider(float v, int32_t g, int32_t j) {
    if (!(v < kInfinity)) return;  // NaN and infinity never become a best
    if (v < value || (v == value && (g < group || (g == group && j < member)))) {
      value = v;
      group = g;
      member = j;
    }
  }
};

// The pair values grouping reads, under the cap.
struct CappedValues {
  const PairTable& table;
  int by_what;
  float max_rf;
  bool Capped(int32_t i, int32_t j) const { return max_rf < kNoFrequencyCap && !(table.Second(i, j) < max_rf); }
  float Value(int32_t i, int32_t j) const {
    return Capped(i, j) ? std::numeric_limits<float>::quiet_NaN() : PairValue(table, by_what, i, j);
  }
  float Second(int32_t i, int32_t j) const {
    return Capped(i, j) ? std::numeric_limits<float>::quiet_NaN() : table.Second(i, j);
  }
};

// Each grouped marker, once the sweep reaches it, pulls in every free marker within the
// fold-in frequency; a marker pulled in this way becomes a source later in the same sweep.
void FoldIn(const CappedValues& table, int32_t n, int32_t* group) {
  for (int32_t i = 1; i <= n; ++i) {
    if (group[i - 1] == 0) continue;
    for (int32_t j = 1; j <= n; ++j)
      if (group[j - 1] == 0 && table.Second(i, j) < kFoldInFrequency) group[j - 1] = group[i - 1];
  }
}

void Grow(const CappedValues& table, int32_t n, float threshold, int32_t* group) {
  std::vector<int32_t> free_markers;
  int32_t largest = 0;
  for (int32_t i = 1; i <= n; ++i) {
    if (group[i - 1] == 0) free_markers.push_back(i);
    largest = std::max(largest, group[i - 1]);
  }
  if (free_markers.empty()) return;
  std::vector<Partner> best(static_cast<std::size_t>(n) + 1);
  for (int32_t j = 1; j <= n; ++j) {
    if (group[j - 1] < 1) continue;
    for (const int32_t i : free_markers) best[static_cast<std::size_t>(i)].Consider(table.Value(i, j), group[j - 1], j);
  }
  while (!free_markers.empty()) {
    std::size_t chosen = 0;
    float closest = kInfinity;
    for (std::size_t k = 0; k < free_markers.size(); ++k) {
      const float v = best[static_cast<std::size_t>(free_markers[k])].value;
      if (v < closest) {
        closest = v;
        chosen = k;
      }
    }
    // With no comparable value at all the lowest free marker is taken: it opens a group.
    const int32_t marker = free_markers[chosen];
    const int32_t joins = closest < threshold ? best[static_cast<std::size_t>(marker)].group : largest + 1;
    group[marker - 1] = joins;
    largest = std::max(largest, joins);
    free_markers.erase(free_markers.begin() + static_cast<std::ptrdiff_t>(chosen));
    for (const int32_t i : free_markers) best[static_cast<std::size_t>(i)].Consider(table.Value(i, marker), joins, marker);
  }
}

}  // namespace

void GroupByThreshold(const PairTable& store, int by_what, int32_t n, float threshold,
                      const int32_t* anchor, int32_t* group, float max_rf) {
  if (n < 1) return;
  const CappedValues table{store, by_what, max_rf};
  const std::vector<int32_t> ranked = AnchorRanks(n, anchor);
  std::copy(ranked.begin(), ranked.end(), group);
  const int64_t anchored = std::accumulate(group, group + n, int64_t{0});
  if (anchored == 0) {
    float best = kInfinity;
    int32_t bi = 0, bj = 0;
    for (int32_t i = 2; i <= n; ++i) {
      for (int32_t j = 1; j < i; ++j) {
        const float v = table.Value(i, j);
        if (v < best) {
          best = v;
          bi = i;
          bj = j;
        }
      }
    }
    if (!(best < threshold)) {
      std::iota(group, group + n, 1);
      return;
    }
    group[bi - 1] = 1;
    group[bj - 1] = 1;
  }
  FoldIn(table, n, group);
  Grow(table, n, threshold, group);
}

std::vector<int32_t> AnchorRanks(int32_t n, const int32_t* anchor) {
  std::vector<int32_t> ranked(anchor, anchor + (n > 0 ? n : 0));
  std::vector<int32_t> used;
  for (const int32_t a : ranked)
    if (a >= 1) used.push_back(a);
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  for (int32_t& a : ranked)
    if (a >= 1) a = static_cast<int32_t>(std::lower_bound(used.begin(), used.end(), a) - used.begin()) + 1;
  return ranked;
}

void GroupByAnchors(int32_t n, const int32_t* anchor, int32_t* group) {
  if (n < 1) return;
  const std::vector<int32_t> ranked = AnchorRanks(n, anchor);
  for (int32_t i = 0; i < n; ++i) group[i] = std::max(0, ranked[static_cast<std::size_t>(i)]);
}

}  // namespace gae
