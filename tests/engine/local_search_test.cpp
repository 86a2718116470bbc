// The four local searches against a literal transcription of their rules: pointer walks over
// a successor list, values looked up by pair index in a packed matrix, every pass scanning
// every move. Same moves, same gains, same final tour.
#include "engine/local_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>

#include "engine/engine_test_support.h"
#include "engine/neighbour_lists.h"
#include "engine/sort_sample.h"
#include "vocabulary/pair_index.h"

namespace gae {
namespace {

using testing::At;
using testing::Packed;
using Dist = std::function<float(int32_t, int32_t)>;

// ---- Literal transcription ---------------------------------------------------------------

void LitReverse(std::vector<int32_t>& next, int32_t p, int32_t q, int32_t stop) {
  do {
    const int32_t t = next[p];
    next[p] = q;
    q = p;
    p = t;
  } while (p != stop);
}

struct Longest {
  float l[4] = {0, 0, 0, 0};
  int64_t e[4] = {0, 0, 0, 0};
};

Longest LitLongestEdges(int32_t n, const Dist& D, const std::vector<int32_t>& next) {
  std::vector<float> neg(n), sorted(n);
  std::vector<int64_t> idx(n);
  std::vector<int32_t> perm(n);
  for (int32_t i = 1; i <= n; ++i) {
    neg[i - 1] = -D(i, next[i]);
    idx[i - 1] = GroupPairIndex(i, next[i]);
  }
  SVRGP(n, neg.data(), sorted.data(), perm.data());
  Longest out;
  for (int k = 0; k < 4 && k < n; ++k) {
    out.l[k] = -sorted[k];
    out.e[k] = idx[perm[k] - 1];
  }
  return out;
}

float Max2(float a, float b) { return std::max(a, b); }

void LitTwoOpt(int32_t m, const Dist& D, std::vector<int32_t>& next, bool open, MoveLog& moves) {
  for (;;) {
    Longest lg;
    if (open) lg = LitLongestEdges(m, D, next);
    float best = -std::numeric_limits<float>::infinity();
    int32_t ka = 0, kb = 0, kc = 0, kd = 0;
    int32_t a = 1;
    for (int32_t i = 1; i <= m - 2; ++i) {
      const int32_t limit = i == 1 ? m - 1 : m;
      const int32_t b = next[a];
      int32_t c = next[b];
      for (int32_t j = i + 2; j <= limit; ++j) {
        const int32_t d = next[c];
        float gain;
        if (!open) {
          gain = (D(a, b) + D(c, d)) - (D(a, c) + D(b, d));
        } else {
          const int64_t ab = GroupPairIndex(a, b), cd = GroupPairIndex(c, d);
          float surviving = lg.l[0];
          if (ab == lg.e[0] || cd == lg.e[0]) surviving = (ab == lg.e[1] || cd == lg.e[1]) ? lg.l[2] : lg.l[1];
          const float C = Max2(Max2(D(a, c), D(b, d)), surviving);
          gain = ((D(a, b) + D(c, d)) - lg.l[0]) - ((D(a, c) + D(b, d)) - C);
        }
        if (gain > best) {
          best = gain;
          ka = a, kb = b, kc = c, kd = d;
        }
        c = d;
      }
      a = b;
    }
    if (best <= 0.0001f) return;
    next[ka] = kc;
    LitReverse(next, kb, kd, kd);
    moves.push_back({0, {ka, kb, kc, kd, 0, 0}, best});
  }
}

// The edges each 3-opt case adds, as places among x1..x6 (two for cases 1 to 3).
constexpr int kAdded[7][3][2] = {{{3, 5}, {4, 6}, {0, 0}}, {{1, 3}, {2, 4}, {0, 0}}, {{1, 5}, {2, 6}, {0, 0}},
                                 {{1, 4}, {2, 5}, {3, 6}}, {{1, 4}, {3, 5}, {2, 6}}, {{1, 3}, {2, 5}, {4, 6}},
                                 {{1, 5}, {2, 4}, {3, 6}}};

void LitThreeOpt(int32_t m, const Dist& D, std::vector<int32_t>& next, bool open, MoveLog& moves) {
  for (;;) {
    Longest lg;
    if (open) lg = LitLongestEdges(m, D, next);
    float best = -std::numeric_limits<float>::infinity();
    int32_t kept[6] = {0, 0, 0, 0, 0, 0};
    int32_t kept_case = 0;
    int32_t x1 = 1;
    for (int32_t i = 1; i <= m - 4; ++i) {
      const int32_t limit1 = i == 1 ? m - 3 : m - 2;
      const int32_t x2 = next[x1];
      int32_t x3 = next[x2];
      for (int32_t j = i + 2; j <= limit1; ++j) {
        const int32_t x4 = next[x3];
        int32_t x5 = next[x4];
        const int32_t limit2 = i == 1 ? m - 1 : m;
        for (int32_t k = j + 2; k <= limit2; ++k) {
          const int32_t x6 = next[x5];
          const int32_t x[7] = {0, x1, x2, x3, x4, x5, x6};
          auto d = [&](int p, int q) { return D(x[p], x[q]); };
          auto pi = [&](int p, int q) { return GroupPairIndex(x[p], x[q]); };
          // removed pairs per case
          const int rem[7][3][2] = {{{3, 4}, {5, 6}, {0, 0}}, {{1, 2}, {3, 4}, {0, 0}}, {{1, 2}, {5, 6}, {0, 0}},
                                    {{1, 2}, {3, 4}, {5, 6}}, {{1, 2}, {3, 4}, {5, 6}}, {{1, 2}, {3, 4}, {5, 6}},
                                    {{1, 2}, {3, 4}, {5, 6}}};
          const bool voids[7] = {x3 == x5 || x4 == x6, x1 == x3 || x2 == x4, x1 == x5 || x2 == x6,
                                 x1 == x4 || x2 == x5 || x3 == x6, x1 == x4 || x3 == x5 || x2 == x6,
                                 x1 == x3 || x2 == x5 || x4 == x6, x1 == x5 || x2 == x4 || x3 == x6};
          float g[7];
          for (int c = 0; c < 7; ++c) {
            const int edges = c < 3 ? 2 : 3;
            float removed = d(rem[c][0][0], rem[c][0][1]);
            float added = d(kAdded[c][0][0], kAdded[c][0][1]);
            float top_added = added;
            for (int q = 1; q < edges; ++q) {
              removed += d(rem[c][q][0], rem[c][q][1]);
              added += d(kAdded[c][q][0], kAdded[c][q][1]);
              top_added = Max2(top_added, d(kAdded[c][q][0], kAdded[c][q][1]));
            }
            if (!open) {
              g[c] = removed - added;
            } else {
              // first of E1, E2 (E3 for three removed) not removed, else the next longest
              float surviving = lg.l[edges];
              for (int e = 0; e < edges; ++e) {
                bool gone = false;
                for (int q = 0; q < edges; ++q) gone |= pi(rem[c][q][0], rem[c][q][1]) == lg.e[e];
                if (!gone) {
                  surviving = lg.l[e];
                  break;
                }
              }
              g[c] = (removed - lg.l[0]) - (added - Max2(top_added, surviving));
            }
            if (voids[c]) g[c] = 0.0f;
          }
          const float top = *std::max_element(g, g + 7);
          if (top > best) {
            best = top;
            kept_case = static_cast<int32_t>(std::find(g, g + 7, top) - g) + 1;
            std::copy(x + 1, x + 7, kept);
          }
          x5 = x6;
        }
        x3 = x4;
      }
      x1 = x2;
    }
    if (best <= 0.0001f) return;
    const int32_t y1 = kept[0], y2 = kept[1], y3 = kept[2], y4 = kept[3], y5 = kept[4], y6 = kept[5];
    switch (kept_case) {
      case 1: next[y3] = y5; LitReverse(next, y4, y6, y6); break;
      case 2: next[y1] = y3; LitReverse(next, y2, y4, y4); break;
      case 3: next[y1] = y5; LitReverse(next, y2, y6, y6); break;
      case 4: next[y1] = y4; next[y5] = y2; next[y3] = y6; break;
      case 5: next[y1] = y4; next[y5] = y3; LitReverse(next, y2, y6, y4); break;
      case 6: next[y1] = y3; LitReverse(next, y2, y5, y4); LitReverse(next, y4, y6, y6); break;
      case 7: next[y1] = y5; LitReverse(next, y4, y2, y6); next[y3] = y6; break;
    }
    AppliedMove move{kept_case, {}, best};
    std::copy(kept, kept + 6, move.cities);
    moves.push_back(move);
  }
}

std::vector<int32_t> LitNext(const std::vector<int32_t>& tour) {
  std::vector<int32_t> next(tour.size() + 1);
  for (std::size_t i = 0; i < tour.size(); ++i) next[tour[i]] = tour[(i + 1) % tour.size()];
  return next;
}
std::vector<int32_t> LitRead(const std::vector<int32_t>& next, int32_t m) {
  std::vector<int32_t> t;
  for (int32_t c = 1; static_cast<int32_t>(t.size()) < m; c = next[c]) t.push_back(c);
  return t;
}

// search 1..4 as OrderingParam2 numbers them
std::vector<int32_t> LitSearch(int search, int32_t n, const Packed& packed, std::vector<int32_t> tour,
                               MoveLog& moves) {
  const bool three = search == 2 || search == 4;
  if (search <= 2) {
    float big = -std::numeric_limits<float>::infinity();
    for (float v : packed) big = std::max(big, v);
    big *= 2.0f;
    const Dist D = [&](int32_t i, int32_t j) { return (i == n + 1 || j == n + 1) ? big : At(packed, i, j); };
    tour.push_back(n + 1);
    std::vector<int32_t> next = LitNext(tour);
    three ? LitThreeOpt(n + 1, D, next, false, moves) : LitTwoOpt(n + 1, D, next, false, moves);
    const std::vector<int32_t> t = LitRead(next, n + 1);
    const auto p = std::find(t.begin(), t.end(), n + 1) - t.begin();
    std::vector<int32_t> out(t.begin() + p + 1, t.end());
    out.insert(out.end(), t.begin(), t.begin() + p);
    return out;
  }
  const Dist D = [&](int32_t i, int32_t j) { return i == j ? 0.0f : At(packed, i, j); };
  std::vector<int32_t> next = LitNext(tour);
  three ? LitThreeOpt(n, D, next, true, moves) : LitTwoOpt(n, D, next, true, moves);
  std::vector<int32_t> t = LitRead(next, n);
  if (n < 2) return t;
  // rotate so that the longest edge closes the cycle
  int32_t cut = n;
  float longest = D(t[n - 1], t[0]);
  for (int32_t i = 1; i <= n - 1; ++i) {
    if (D(t[i - 1], t[i]) > longest) {
      longest = D(t[i - 1], t[i]);
      cut = i;
    }
  }
  std::vector<int32_t> out(n);
  for (int32_t k = 1; k <= n; ++k) out[k - 1] = t[(cut + k - 1) % n];
  return out;
}

void RunOurs(int search, const TourMatrix& d, Tour& tour, MoveLog& moves, const NeighbourLists* near) {
  switch (search) {
    case 1: TwoOptWithDummy(d, tour, &moves, near); break;
    case 2: ThreeOptWithDummy(d, tour, &moves, near); break;
    case 3: TwoOptOpenPath(d, tour, &moves, near); break;
    case 4: ThreeOptOpenPath(d, tour, &moves, near); break;
  }
}

// Markers on a line: values grow with the distance, rounded to a coarse grid (ties, zeros),
// with some noise so that the order is worth searching; negated and shifted like minus-LOD
// values when `lod`, and scaled up so that 32-bit rounding reaches the 0.0001 bar.
Packed LinePacked(int32_t n, std::mt19937& rng, bool lod, float scale) {
  std::uniform_real_distribution<float> where(0.0f, 10.0f), noise(0.0f, 1.0f);
  std::vector<float> x(static_cast<std::size_t>(n) + 1);
  for (float& v : x) v = std::round(where(rng) * 2.0f) / 2.0f;
  Packed d(static_cast<std::size_t>(PairCount(n)));
  for (int32_t i = 2; i <= n; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      float v = std::fabs(x[i] - x[j]) + (noise(rng) < 0.2f ? std::round(noise(rng) * 4.0f) / 2.0f : 0.0f);
      if (lod) v -= 12.0f;
      d[GroupPairIndex(i, j) - 1] = v * scale;
    }
  }
  return d;
}

// Lists of two neighbours force the whole-row fallback often; the default length rarely.
constexpr int32_t kListLengths[] = {2, NeighbourLists::kDefaultLength};

void CompareOnRandomMatrices(int search, int32_t largest_n, int trials) {
  std::mt19937 rng(1000 + search);
  std::uniform_int_distribution<int32_t> size(1, largest_n);
  int moved = 0;
  for (int trial = 0; trial < trials; ++trial) {
    const int32_t n = size(rng);
    // Small integers (ties everywhere), fractional values, negative half the time, and markers
    // on a line at three scales (the largest puts rounding above the 0.0001 bar).
    Packed packed;
    switch (trial % 5) {
      case 0: packed = testing::RandomPacked(n, rng, -9, 9); break;
      case 1: packed = testing::RandomPacked(n, rng, trial % 2 == 1 ? -50 : 0, 50, true); break;
      case 2: packed = LinePacked(n, rng, false, 0.05f); break;
      case 3: packed = LinePacked(n, rng, true, 1.0f); break;
      default: packed = LinePacked(n, rng, trial % 2 == 0, 300.0f); break;
    }
    std::vector<int32_t> start(n);
    std::iota(start.begin(), start.end(), 1);
    std::shuffle(start.begin(), start.end(), rng);
    MoveLog literal_moves;
    const std::vector<int32_t> literal = LitSearch(search, n, packed, start, literal_moves);
    const TourMatrix matrix = testing::ToTourMatrix(n, packed);
    for (const int32_t length : kListLengths) {
      const NeighbourLists near(matrix, length);
      MoveLog our_moves;
      Tour ours = start;
      RunOurs(search, matrix, ours, our_moves, &near);
      ASSERT_EQ(ours, literal) << "search " << search << " trial " << trial << " n " << n << " list " << length;
      ASSERT_EQ(our_moves, literal_moves) << "search " << search << " trial " << trial << " list " << length;
      moved += !our_moves.empty();
    }
    Tour sorted = literal;
    std::sort(sorted.begin(), sorted.end());
    std::vector<int32_t> all(n);
    std::iota(all.begin(), all.end(), 1);
    ASSERT_EQ(sorted, all);
  }
  EXPECT_GT(moved, trials);  // the comparison is about moves, not about idle searches
}

TEST(LocalSearch, TwoOptThroughDummyCityMatchesLiteralRuleMoveForMove) { CompareOnRandomMatrices(1, 60, 400); }
TEST(LocalSearch, ThreeOptThroughDummyCityMatchesLiteralRuleMoveForMove) { CompareOnRandomMatrices(2, 22, 250); }
TEST(LocalSearch, TwoOptOnOpenPathMatchesLiteralRuleMoveForMove) { CompareOnRandomMatrices(3, 60, 400); }
TEST(LocalSearch, ThreeOptOnOpenPathMatchesLiteralRuleMoveForMove) { CompareOnRandomMatrices(4, 22, 250); }

TEST(LocalSearch, ValuesThatAreNotAllFiniteScoreEveryMove) {
  // With an infinite value the rounding bounds say nothing, so the lists are set aside and
  // every move is scored: the same moves as the literal rule on the finite matrix it is given.
  std::mt19937 rng(77);
  for (int search = 1; search <= 4; ++search) {
    const int32_t n = 12;
    const Packed packed = LinePacked(n, rng, search % 2 == 0, 1.0f);
    Packed with_infinity = packed;
    with_infinity[3] = std::numeric_limits<float>::infinity();
    const NeighbourLists unusable(testing::ToTourMatrix(n, with_infinity));
    ASSERT_FALSE(unusable.Usable());
    std::vector<int32_t> start(n);
    std::iota(start.begin(), start.end(), 1);
    std::shuffle(start.begin(), start.end(), rng);
    MoveLog literal_moves, our_moves;
    const std::vector<int32_t> literal = LitSearch(search, n, packed, start, literal_moves);
    Tour ours = start;
    RunOurs(search, testing::ToTourMatrix(n, packed), ours, our_moves, &unusable);
    EXPECT_EQ(ours, literal) << search;
    EXPECT_EQ(our_moves, literal_moves) << search;
  }
}

TEST(LocalSearch, GainOfExactlyTheMinimumIsNotApplied) {
  // Cycle 1-2-3-4: the only useful exchange replaces (1,2)+(3,4) by (1,3)+(2,4), a gain of
  // exactly 0.0001 in 32 bits.
  Packed d(6, 0.0f);
  d[GroupPairIndex(2, 1) - 1] = 0.0001f;  // every other pair 0
  ASSERT_EQ((0.0001f + 0.0f) - (0.0f + 0.0f), kMinimumGain);
  const TourMatrix m = testing::ToTourMatrix(4, d);
  Successors next = BuildSuccessors({1, 2, 3, 4});
  MoveLog moves;
  TwoOptPasses(m, next, false, &moves);
  EXPECT_TRUE(moves.empty());
  d[GroupPairIndex(2, 1) - 1] = 0.0002f;  // now strictly above: applied
  TwoOptPasses(testing::ToTourMatrix(4, d), next, false, &moves);
  EXPECT_EQ(moves.size(), 1u);
}

}  // namespace
}  // namespace gae
