#include "engine/backbone_order.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/path_moves.h"

namespace gae {

namespace {

// A missing value (no pair estimate) counts as far apart.
double Far(float value) { return std::isnan(value) ? 1e9 : static_cast<double>(value); }

// Summed value from `from` to every city of the tree, and each city's predecessor on the way.
void TreeDistances(const TourMatrix& d, const std::vector<std::vector<int32_t>>& adjacent, int32_t from,
                   std::vector<double>& reach, std::vector<int32_t>& before) {
  const size_t side = adjacent.size();
  reach.assign(side, -1.0);
  before.assign(side, 0);
  std::vector<int32_t> stack{from};
  reach[static_cast<size_t>(from)] = 0.0;
  while (!stack.empty()) {
    const int32_t at = stack.back();
    stack.pop_back();
    for (const int32_t next : adjacent[static_cast<size_t>(at)]) {
      if (reach[static_cast<size_t>(next)] >= 0.0) continue;
      reach[static_cast<size_t>(next)] = reach[static_cast<size_t>(at)] + Far(d(at, next));
      before[static_cast<size_t>(next)] = at;
      stack.push_back(next);
    }
  }
}

std::vector<std::vector<int32_t>> TreeLinks(const std::vector<int32_t>& parent) {
  std::vector<std::vector<int32_t>> adjacent(parent.size());
  for (size_t i = 1; i < parent.size(); ++i)
    if (parent[i] > 0) {
      adjacent[i].push_back(parent[i]);
      adjacent[static_cast<size_t>(parent[i])].push_back(static_cast<int32_t>(i));
    }
  return adjacent;
}

// The placed cities as a doubly linked path (0 for none).
struct LinkedPath {
  std::vector<int32_t> next, prev;
  int32_t head = 0;
  bool Placed(int32_t c) const { return next[static_cast<size_t>(c)] >= 0; }
};

// The cheapest place beside `anchor` for city x: its left gap (prev, anchor) or its right gap.
void BestGapBeside(const TourMatrix& d, const LinkedPath& path, int32_t x, int32_t anchor, double& best,
                   int32_t& left, int32_t& right) {
  const int32_t gaps[2][2] = {{path.prev[static_cast<size_t>(anchor)], anchor},
                              {anchor, path.next[static_cast<size_t>(anchor)]}};
  for (const auto& gap : gaps) {
    const int32_t u = gap[0], v = gap[1];
    double grow = 0.0;
    if (u > 0) grow += Far(d(u, x));
    if (v > 0) grow += Far(d(x, v));
    if (u > 0 && v > 0) grow -= Far(d(u, v));
    if (grow < best) best = grow, left = u, right = v;
  }
}

void InsertCity(LinkedPath& path, int32_t x, int32_t left, int32_t right) {
  path.prev[static_cast<size_t>(x)] = left;
  path.next[static_cast<size_t>(x)] = right;
  if (left > 0) path.next[static_cast<size_t>(left)] = x;
  else path.head = x;
  if (right > 0) path.prev[static_cast<size_t>(right)] = x;
}

}  // namespace

TourMatrix TrustedFrequencies(const PairTable& pairs, int32_t n, const int32_t* order, float min_lod) {
  constexpr int32_t kVia = 12;  // the near cities a mistrusted pair may be bridged through
  TourMatrix d(n);
  std::vector<char> trusted(static_cast<size_t>(n + 1) * static_cast<size_t>(n + 1), 0);
  auto cell = [n](int32_t i, int32_t j) { return static_cast<size_t>(i) * static_cast<size_t>(n + 1) + static_cast<size_t>(j); };
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) {
      const float rf = pairs.Second(order[i - 1], order[j - 1]);
      const bool trust = -pairs.First(order[i - 1], order[j - 1]) >= min_lod && rf == rf;
      trusted[cell(i, j)] = trusted[cell(j, i)] = trust;
      d.Set(i, j, trust ? rf : 0.5f);
    }
  // A mistrusted pair is as far apart as a path through a trusted near city makes it, at most
  // unlinked: two markers beside one well-typed marker are close whatever their own pair says.
  const std::vector<int32_t> near = NearestCities(d, kVia);
  TourMatrix bridged = d;
  for (int32_t i = 1; i <= n; ++i)
    for (int32_t r = 0; r < kVia; ++r) {
      const int32_t k = near[static_cast<size_t>(i - 1) * kVia + static_cast<size_t>(r)];
      if (k <= 0 || !trusted[cell(i, k)]) continue;
      const float* via = d.Row(k);
      for (int32_t j = 1; j <= n; ++j) {
        if (j == i || trusted[cell(i, j)] || !trusted[cell(k, j)]) continue;
        const float through = d(i, k) + via[j];
        if (through < bridged(i, j)) bridged.Set(i, j, through);
      }
    }
  return bridged;
}

std::vector<int32_t> NearestCities(const TourMatrix& d, int32_t k) {
  const int32_t n = d.Size();
  std::vector<int32_t> near(static_cast<size_t>(n) * static_cast<size_t>(k), 0);
  std::vector<int32_t> others;
  for (int32_t i = 1; i <= n; ++i) {
    others.clear();
    for (int32_t j = 1; j <= n; ++j)
      if (j != i) others.push_back(j);
    const size_t take = std::min(others.size(), static_cast<size_t>(k));
    const float* row = d.Row(i);
    std::partial_sort(others.begin(), others.begin() + static_cast<std::ptrdiff_t>(take), others.end(),
                      [row](int32_t a, int32_t b) {
                        const double va = Far(row[a]), vb = Far(row[b]);
                        return va != vb ? va < vb : a < b;
                      });
    std::copy_n(others.begin(), take, near.begin() + static_cast<std::ptrdiff_t>(static_cast<size_t>(i - 1) * static_cast<size_t>(k)));
  }
  return near;
}

std::vector<int32_t> SpanningTreeParents(const TourMatrix& d) {
  const int32_t n = d.Size();
  std::vector<int32_t> parent(static_cast<size_t>(n) + 1, 0);
  std::vector<double> key(static_cast<size_t>(n) + 1, std::numeric_limits<double>::infinity());
  std::vector<char> in_tree(static_cast<size_t>(n) + 1, 0);
  int32_t at = 1;
  for (int32_t added = 1; added <= n; ++added) {
    in_tree[static_cast<size_t>(at)] = 1;
    const float* row = d.Row(at);
    int32_t best = 0;
    for (int32_t j = 1; j <= n; ++j) {
      if (in_tree[static_cast<size_t>(j)]) continue;
      if (Far(row[j]) < key[static_cast<size_t>(j)]) key[static_cast<size_t>(j)] = Far(row[j]), parent[static_cast<size_t>(j)] = at;
      if (best == 0 || key[static_cast<size_t>(j)] < key[static_cast<size_t>(best)]) best = j;
    }
    if (best == 0) break;
    at = best;
  }
  return parent;
}

std::vector<int32_t> LongestTreePath(const TourMatrix& d, const std::vector<int32_t>& parent) {
  if (d.Size() == 0) return {};
  const std::vector<std::vector<int32_t>> adjacent = TreeLinks(parent);
  std::vector<double> reach;
  std::vector<int32_t> before;
  TreeDistances(d, adjacent, 1, reach, before);
  const int32_t one_end = static_cast<int32_t>(std::max_element(reach.begin() + 1, reach.end()) - reach.begin());
  TreeDistances(d, adjacent, one_end, reach, before);
  int32_t other_end = static_cast<int32_t>(std::max_element(reach.begin() + 1, reach.end()) - reach.begin());
  std::vector<int32_t> path;
  for (; other_end != one_end; other_end = before[static_cast<size_t>(other_end)]) path.push_back(other_end);
  path.push_back(one_end);
  return path;
}

std::vector<int32_t> BackboneOrder(const TourMatrix& d, int32_t k) {
  const int32_t n = d.Size();
  if (n <= 2) {
    std::vector<int32_t> order;
    for (int32_t i = 1; i <= n; ++i) order.push_back(i);
    return order;
  }
  const std::vector<int32_t> parent = SpanningTreeParents(d);
  const std::vector<int32_t> near = NearestCities(d, k);
  LinkedPath path{std::vector<int32_t>(static_cast<size_t>(n) + 1, -1), std::vector<int32_t>(static_cast<size_t>(n) + 1, -1)};
  std::vector<int32_t> queue = LongestTreePath(d, parent);
  for (size_t q = 0; q < queue.size(); ++q) InsertCity(path, queue[q], q == 0 ? 0 : queue[q - 1], 0);
  // The rest in the order the tree reaches them from the backbone, so each has a placed tree
  // neighbour to be put beside when none of its nearest cities is placed yet.
  const std::vector<std::vector<int32_t>> adjacent = TreeLinks(parent);
  for (size_t q = 0; q < queue.size(); ++q) {
    const int32_t c = queue[q];
    for (const int32_t x : adjacent[static_cast<size_t>(c)]) {
      if (path.Placed(x)) continue;
      double best = std::numeric_limits<double>::infinity();
      int32_t left = 0, right = 0;
      BestGapBeside(d, path, x, c, best, left, right);
      for (int32_t r = 0; r < k; ++r) {
        const int32_t z = near[static_cast<size_t>(x - 1) * static_cast<size_t>(k) + static_cast<size_t>(r)];
        if (z > 0 && path.Placed(z)) BestGapBeside(d, path, x, z, best, left, right);
      }
      InsertCity(path, x, left, right);
      queue.push_back(x);
    }
  }
  std::vector<int32_t> order;
  for (int32_t c = path.head; c > 0; c = path.next[static_cast<size_t>(c)]) order.push_back(c);
  ImprovePath(d, near, k, order);
  return order;
}

}  // namespace gae
