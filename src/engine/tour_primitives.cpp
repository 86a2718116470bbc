#include "engine/tour_primitives.h"

#include <limits>
#include <numeric>
#include <utility>

#include "engine/sort_sample.h"
#include "vocabulary/pair_index.h"

namespace gae {

void NearestNeighbourTour(const TourMatrix& d, int32_t start, Tour& tour) {
  const int32_t n = d.Size();
  tour.resize(static_cast<std::size_t>(n));
  std::iota(tour.begin(), tour.end(), 1);
  if (n < 1) return;
  std::swap(tour[0], tour[static_cast<std::size_t>(start - 1)]);
  for (int32_t i = 1; i < n; ++i) {
    const float* row = d.Row(tour[static_cast<std::size_t>(i - 1)]);
    float best = std::numeric_limits<float>::infinity();
    int32_t kept = i;
    for (int32_t k = i; k < n; ++k) {
      const float v = row[tour[static_cast<std::size_t>(k)]];
      if (v <= best) {
        best = v;
        kept = k;
      }
    }
    std::swap(tour[static_cast<std::size_t>(i)], tour[static_cast<std::size_t>(kept)]);
  }
}

void ClosedLength(const TourMatrix& d, const Tour& tour, float* total, float* longest) {
  const std::size_t n = tour.size();
  float sum = d(tour[n - 1], tour[0]);
  float top = sum;
  for (std::size_t i = 0; i + 1 < n; ++i) {
    const float v = d(tour[i], tour[i + 1]);
    sum += v;
    if (v > top) top = v;
  }
  *total = sum;
  if (longest != nullptr) *longest = top;
}

void OpenLength(const TourMatrix& d, const Tour& tour, float* total, float* closing) {
  const std::size_t n = tour.size();
  float sum = 0.0f;
  for (std::size_t i = 0; i + 1 < n; ++i) sum += d(tour[i], tour[i + 1]);
  *total = sum;
  if (closing != nullptr) *closing = d(tour[n - 1], tour[0]);
}

float PairWeightedSum(const TourMatrix& d, const Tour& tour) {
  const int32_t n = static_cast<int32_t>(tour.size());
  float sum = 0.0f;
  for (int32_t i = 2; i <= n; ++i) {
    const float* row = d.Row(tour[static_cast<std::size_t>(i - 1)]);
    for (int32_t j = 1; j < i; ++j) {
      const float gap = static_cast<float>(i - j);
      sum += row[tour[static_cast<std::size_t>(j - 1)]] / (gap * gap);
    }
  }
  return sum;
}

void RotateToLongestEdge(const TourMatrix& d, Tour& tour) {
  const std::size_t n = tour.size();
  if (n < 2) return;
  std::size_t cut = n;  // the edge after position cut (1-based), n being the closing edge
  float longest = d(tour[n - 1], tour[0]);
  for (std::size_t i = 1; i < n; ++i) {
    const float v = d(tour[i - 1], tour[i]);
    if (v > longest) {
      longest = v;
      cut = i;
    }
  }
  Tour rotated(n);
  for (std::size_t k = 0; k < n; ++k) rotated[k] = tour[(cut + k) % n];
  tour.swap(rotated);
}

Successors BuildSuccessors(const Tour& tour) {
  const std::size_t m = tour.size();
  Successors next(m + 1, 0);
  for (std::size_t i = 0; i < m; ++i) next[static_cast<std::size_t>(tour[i])] = tour[(i + 1) % m];
  return next;
}

Tour TourFromCityOne(const Successors& next, int32_t m) {
  Tour tour(static_cast<std::size_t>(m));
  int32_t city = 1;
  for (int32_t i = 0; i < m; ++i) {
    tour[static_cast<std::size_t>(i)] = city;
    city = next[static_cast<std::size_t>(city)];
  }
  return tour;
}

void Reverse(Successors& next, int32_t p, int32_t q, int32_t stop) {
  do {
    const int32_t t = next[static_cast<std::size_t>(p)];
    next[static_cast<std::size_t>(p)] = q;
    q = p;
    p = t;
  } while (p != stop);
}

void LongestEdges(const TourMatrix& d, const Successors& next, float lengths[4], int64_t edges[4]) {
  const int32_t n = static_cast<int32_t>(next.size()) - 1;
  std::vector<float> negated(static_cast<std::size_t>(n));
  std::vector<int64_t> index(static_cast<std::size_t>(n));
  for (int32_t i = 1; i <= n; ++i) {
    const int32_t j = next[static_cast<std::size_t>(i)];
    negated[static_cast<std::size_t>(i - 1)] = -d(i, j);
    index[static_cast<std::size_t>(i - 1)] = GroupPairIndex(i, j);
  }
  std::vector<float> sorted(static_cast<std::size_t>(n));
  std::vector<int32_t> perm(static_cast<std::size_t>(n));
  SVRGP(n, negated.data(), sorted.data(), perm.data());
  for (int32_t k = 0; k < 4; ++k) {
    if (k < n) {
      lengths[k] = -sorted[static_cast<std::size_t>(k)];
      edges[k] = index[static_cast<std::size_t>(perm[static_cast<std::size_t>(k)] - 1)];
    } else {
      lengths[k] = 0.0f;
      edges[k] = 0;
    }
  }
}

void RemainingLongest(int64_t e12, int64_t e34, int64_t e56, const float lengths[4],
                      const int64_t edges[4], float result[7]) {
  // The first of the longest edges that the move keeps; when all of those considered go, the
  // next longest necessarily stays.
  auto survivor = [&](int64_t r1, int64_t r2, int64_t r3, int considered) {
    for (int k = 0; k < considered; ++k)
      if (edges[k] != r1 && edges[k] != r2 && edges[k] != r3) return lengths[k];
    return lengths[considered];
  };
  result[0] = survivor(e34, e56, e34, 2);
  result[1] = survivor(e12, e34, e12, 2);
  result[2] = survivor(e12, e56, e12, 2);
  const float all_three = survivor(e12, e34, e56, 3);
  for (int c = 3; c < 7; ++c) result[c] = all_three;
}

}  // namespace gae
