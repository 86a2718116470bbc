#include "engine/lod_tree.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "engine/grouping.h"

namespace gae {

namespace {

class UnionFind {
 public:
  explicit UnionFind(int32_t n) : parent_(static_cast<std::size_t>(n) + 1) {
    std::iota(parent_.begin(), parent_.end(), 0);
  }
  int32_t Find(int32_t x) {
    while (parent_[static_cast<std::size_t>(x)] != x) {
      parent_[static_cast<std::size_t>(x)] = parent_[static_cast<std::size_t>(parent_[static_cast<std::size_t>(x)])];
      x = parent_[static_cast<std::size_t>(x)];
    }
    return x;
  }
  // False when a and b were in one set already.
  bool Join(int32_t a, int32_t b) {
    a = Find(a);
    b = Find(b);
    if (a == b) return false;
    parent_[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
    return true;
  }

 private:
  std::vector<int32_t> parent_;
};

LodTreeRow RowOf(UnionFind& sets, int32_t n, float threshold, bool keep_groups) {
  LodTreeRow row;
  row.threshold = threshold;
  std::vector<int32_t> size(static_cast<std::size_t>(n) + 1, 0);
  std::vector<int32_t> number(static_cast<std::size_t>(n) + 1, 0);
  if (keep_groups) row.group.resize(static_cast<std::size_t>(n));
  for (int32_t i = 1; i <= n; ++i) {
    const int32_t root = sets.Find(i);
    if (size[static_cast<std::size_t>(root)]++ == 0) number[static_cast<std::size_t>(root)] = ++row.groups;
    if (keep_groups) row.group[static_cast<std::size_t>(i - 1)] = number[static_cast<std::size_t>(root)];
  }
  for (int32_t i = 1; i <= n; ++i) {
    const int32_t s = size[static_cast<std::size_t>(i)];
    if (s > 0) row.sizes.push_back(s);
    if (s == 1) ++row.singletons;
  }
  std::sort(row.sizes.begin(), row.sizes.end(), std::greater<>());
  return row;
}

// Whether a record lost its value to the cap: its frequency is not below it.
struct Cap {
  float max_rf;
  bool Capped(const float* record) const { return max_rf < kNoFrequencyCap && !(record[1] < max_rf); }
};

// The markers that grouping folds into the seed pair's group before it grows: one sweep in
// marker order, a marker pulled in becoming a source when the sweep reaches it. `near` holds the
// pairs within the fold-in frequency (gathered in the pass, so the sweep reads no pair again).
std::vector<int32_t> FoldedIntoSeed(const std::vector<std::pair<int32_t, int32_t>>& near, int32_t n, int32_t a,
                                    int32_t b) {
  std::vector<int32_t> first(static_cast<std::size_t>(n) + 2, 0), partners(2 * near.size());
  for (const auto& [i, j] : near) {
    ++first[static_cast<std::size_t>(i) + 1];
    ++first[static_cast<std::size_t>(j) + 1];
  }
  for (std::size_t m = 1; m < first.size(); ++m) first[m] += first[m - 1];
  std::vector<int32_t> fill(first.begin(), first.end() - 1);
  for (const auto& [i, j] : near) {
    partners[static_cast<std::size_t>(fill[static_cast<std::size_t>(i)]++)] = j;
    partners[static_cast<std::size_t>(fill[static_cast<std::size_t>(j)]++)] = i;
  }
  std::vector<int32_t> grouped(static_cast<std::size_t>(n) + 1, 0);
  grouped[static_cast<std::size_t>(a)] = grouped[static_cast<std::size_t>(b)] = 1;
  for (int32_t i = 1; i <= n; ++i) {
    if (grouped[static_cast<std::size_t>(i)] == 0) continue;
    for (int32_t k = first[static_cast<std::size_t>(i)]; k < first[static_cast<std::size_t>(i) + 1]; ++k)
      grouped[static_cast<std::size_t>(partners[static_cast<std::size_t>(k)])] = 1;
  }
  std::vector<int32_t> members;
  for (int32_t i = 1; i <= n; ++i)
    if (grouped[static_cast<std::size_t>(i)] != 0) members.push_back(i);
  return members;
}

bool Stronger(const LodForestEdge& x, const LodForestEdge& y) { return x.value < y.value; }

// Keeps of the pairs only a spanning forest built strongest first: at every threshold the
// pairs above it that remain connect exactly the markers that all of them connected, so the
// rows come out the same while memory stays within a bound, whatever the number of pairs.
void KeepSpanningForest(int32_t n, std::vector<LodForestEdge>& linked) {
  std::sort(linked.begin(), linked.end(), Stronger);
  UnionFind sets(n);
  std::size_t kept = 0;
  for (const LodForestEdge& p : linked)
    if (sets.Join(p.i, p.j)) linked[kept++] = p;
  linked.resize(kept);
}

}  // namespace

LodForest BuildLodForest(const PairTable& table, int32_t n, float lowest_threshold, float max_rf,
                         std::size_t held_pairs, const std::function<void(int64_t)>& passed) {
  LodForest forest;
  forest.n = n;
  forest.loosest = -lowest_threshold;
  if (n < 1) return forest;
  const Cap pairs{max_rf};
  std::vector<std::pair<int32_t, int32_t>> near;
  int32_t seed_i = 0, seed_j = 0;
  const std::size_t cap = held_pairs > 0 ? std::max<std::size_t>(held_pairs, static_cast<std::size_t>(n))
                                        : std::max<std::size_t>(std::size_t{1} << 21, 4 * static_cast<std::size_t>(n));
  const int64_t total = static_cast<int64_t>(n) * (n - 1) / 2;
  const int64_t stored = std::min(total, table.num_records);
  // Row by row the records lie one after another in the store.
  int64_t k = 0;
  for (int32_t i = 2; i <= n; ++i) {
    for (int32_t j = 1; j < i; ++j, ++k) {
      if (k >= stored) break;
      const float* record = table.records + k * table.record_length;
      if (pairs.Capped(record)) {
        ++forest.capped;
        continue;
      }
      if (record[1] < kFoldInFrequency) near.emplace_back(i, j);
      const float v = record[0];
      if (v < forest.best) {
        forest.best = v;
        seed_i = i;
        seed_j = j;
      }
      if (v < forest.loosest) {
        forest.edges.push_back({v, i, j});
        if (forest.edges.size() >= cap) KeepSpanningForest(n, forest.edges);
      }
    }
    if (passed && i % 256 == 0) passed(k);
  }
  if (passed) passed(k);
  KeepSpanningForest(n, forest.edges);
  if (seed_i > 0) forest.seed = FoldedIntoSeed(near, n, seed_i, seed_j);
  return forest;
}

std::vector<LodTreeRow> LodTreeRows(const LodForest& forest, const std::vector<float>& thresholds, bool keep_groups) {
  std::vector<LodTreeRow> rows(thresholds.size());
  const int32_t n = forest.n;
  if (n < 1 || thresholds.empty()) return rows;
  // Rows from the highest threshold down, each adding the pairs that clear it.
  std::vector<std::size_t> order(thresholds.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](std::size_t x, std::size_t y) { return thresholds[x] > thresholds[y]; });
  UnionFind sets(n);
  bool seeded = false;
  std::size_t next = 0;
  for (const std::size_t r : order) {
    const float cut = -thresholds[r];
    // Until the best pair clears the threshold every marker stands alone, fold-in or not.
    if (!seeded && forest.best < cut) {
      for (const int32_t m : forest.seed) sets.Join(forest.seed.front(), m);
      seeded = true;
    }
    while (next < forest.edges.size() && forest.edges[next].value < cut) {
      sets.Join(forest.edges[next].i, forest.edges[next].j);
      ++next;
    }
    rows[r] = RowOf(sets, n, thresholds[r], keep_groups);
  }
  return rows;
}

std::vector<int32_t> ForestGroups(const LodForest& forest, float threshold) {
  if (forest.n < 1) return {};
  return LodTreeRows(forest, {threshold}, true).front().group;
}

std::vector<LodTreeRow> LodTree(const PairTable& table, int32_t n, const std::vector<float>& thresholds,
                                bool keep_groups, std::size_t held_pairs, float max_rf) {
  if (n < 1 || thresholds.empty()) return std::vector<LodTreeRow>(thresholds.size());
  const float lowest = *std::min_element(thresholds.begin(), thresholds.end());
  return LodTreeRows(BuildLodForest(table, n, lowest, max_rf, held_pairs), thresholds, keep_groups);
}

std::vector<float> LodTreeThresholds(float low, float high, float step) {
  std::vector<float> out;
  if (!(step > 0.0f) || !(high >= low)) return out;
  const int count = static_cast<int>(std::floor((high - low) / step + 1e-4f)) + 1;
  for (int k = 0; k < count; ++k) out.push_back(low + static_cast<float>(k) * step);
  return out;
}

int32_t GroupsOfAtLeast(const LodTreeRow& row, int32_t min_size) {
  return static_cast<int32_t>(std::count_if(row.sizes.begin(), row.sizes.end(), [&](int32_t s) { return s >= min_size; }));
}

LodPlateau LongestPlateau(const std::vector<LodTreeRow>& rows, int32_t min_size) {
  LodPlateau best;
  std::size_t start = 0;
  for (std::size_t k = 0; k <= rows.size(); ++k) {
    if (k < rows.size() && k > start && GroupsOfAtLeast(rows[k], min_size) == GroupsOfAtLeast(rows[start], min_size)) continue;
    if (k > start && (best.first < 0 || static_cast<int32_t>(k - start) > best.last - best.first + 1)) {
      best.first = static_cast<int32_t>(start);
      best.last = static_cast<int32_t>(k - 1);
      best.groups = GroupsOfAtLeast(rows[start], min_size);
    }
    start = k;
  }
  return best;
}

}  // namespace gae
