// The 3-opt frame. On m cities, with the cycle read from city 1 as t(1..m): for i from 1 to
// m-4, j from i+2 to m-2 (m-3 when i is 1), k from j+2 to m (m-1 when i is 1), the step removes
// (x1, x2), (x3, x4), (x5, x6) = (t(i), t(i+1)), (t(j), t(j+1)), (t(k), t(k+1)) and tries the
// seven ways to reconnect:
//   case 1: d34 + d56 -> d35 + d46          case 4: d12 + d34 + d56 -> d14 + d25 + d36
//   case 2: d12 + d34 -> d13 + d24          case 5: d12 + d34 + d56 -> d14 + d35 + d26
//   case 3: d12 + d56 -> d15 + d26          case 6: d12 + d34 + d56 -> d13 + d25 + d46
//                                           case 7: d12 + d34 + d56 -> d15 + d24 + d36
// A case whose cities coincide is void (gain 0). The step's gain is the largest of the seven,
// the lowest case reaching it being kept.
#include <limits>

#include "engine/candidate_moves.h"
#include "engine/local_search.h"

namespace gae {

namespace {

struct ThreeOptMove {
  float gain = 0.0f;
  int32_t kind = 0;
  int32_t x[6] = {0, 0, 0, 0, 0, 0};
};

// The gain of the step at positions i < j < k: the largest of its seven cases, `kind` the
// lowest case reaching it (0 when none compares).
template <bool kOpen>
inline float StepGain(const TourMatrix& d, const PassView& v, int32_t i, int32_t j, int32_t k,
                      int32_t* kind) {
  const int32_t* t = v.city.data();
  const float* e = v.edge.data();
  const int32_t x1 = t[i], x2 = t[i + 1], x3 = t[j], x4 = t[j + 1], x5 = t[k], x6 = t[k + 1];
  const float* r1 = d.Row(x1);
  const float* r2 = d.Row(x2);
  const float* r3 = d.Row(x3);
  const float* r4 = d.Row(x4);
  const float d12 = e[i], d34 = e[j], d56 = e[k];
  const float d13 = r1[x3], d24 = r2[x4], d14 = r1[x4];
  const float d35 = r3[x5], d46 = r4[x6], d15 = r1[x5], d26 = r2[x6], d25 = r2[x5], d36 = r3[x6];
  float added[7];
  added[0] = d35 + d46;
  added[1] = d13 + d24;
  added[2] = d15 + d26;
  added[3] = d14 + d25 + d36;
  added[4] = d14 + d35 + d26;
  added[5] = d13 + d25 + d46;
  added[6] = d15 + d24 + d36;
  const float two[3] = {d34 + d56, d12 + d34, d12 + d56};
  const float three = d12 + d34 + d56;
  float gains[7];
  if constexpr (!kOpen) {
    for (int c = 0; c < 3; ++c) gains[c] = two[c] - added[c];
    for (int c = 3; c < 7; ++c) gains[c] = three - added[c];
  } else {
    const float l1 = v.longest[0];
    const int8_t q12 = v.rank[static_cast<std::size_t>(i)];
    const int8_t q34 = v.rank[static_cast<std::size_t>(j)];
    const int8_t q56 = v.rank[static_cast<std::size_t>(k)];
    const float kept[3] = {SurvivorOfTwo(v, q34, q56), SurvivorOfTwo(v, q12, q34),
                           SurvivorOfTwo(v, q12, q56)};
    const float kept_all = SurvivorOfThree(v, q12, q34, q56);
    const float top_added[7] = {
        Larger(d35, d46), Larger(d13, d24), Larger(d15, d26),
        Larger(Larger(d14, d25), d36), Larger(Larger(d14, d35), d26),
        Larger(Larger(d13, d25), d46), Larger(Larger(d15, d24), d36)};
    for (int c = 0; c < 3; ++c)
      gains[c] = (two[c] - l1) - (added[c] - Larger(top_added[c], kept[c]));
    for (int c = 3; c < 7; ++c)
      gains[c] = (three - l1) - (added[c] - Larger(top_added[c], kept_all));
  }
  // Coinciding cities void a case.
  if (x3 == x5 || x4 == x6) gains[0] = 0.0f;
  if (x1 == x3 || x2 == x4) gains[1] = 0.0f;
  if (x1 == x5 || x2 == x6) gains[2] = 0.0f;
  if (x1 == x4 || x2 == x5 || x3 == x6) gains[3] = 0.0f;
  if (x1 == x4 || x3 == x5 || x2 == x6) gains[4] = 0.0f;
  if (x1 == x3 || x2 == x5 || x4 == x6) gains[5] = 0.0f;
  if (x1 == x5 || x2 == x4 || x3 == x6) gains[6] = 0.0f;
  // NaN cases never stand.
  float top = -std::numeric_limits<float>::infinity();
  *kind = 0;
  for (int32_t c = 0; c < 7; ++c) {
    if (gains[c] > top) {
      top = gains[c];
      *kind = c + 1;
    }
  }
  return top;
}

ThreeOptMove MoveAt(const PassView& v, float gain, int32_t kind, int32_t i, int32_t j, int32_t k) {
  const int32_t* t = v.city.data();
  return {gain, kind, {t[i], t[i + 1], t[j], t[j + 1], t[k], t[k + 1]}};
}

// Every step in visiting order.
template <bool kOpen>
ThreeOptMove BestByScan(const TourMatrix& d, const PassView& v) {
  ThreeOptMove best;
  const int32_t m = v.m;
  for (int32_t i = 0; i <= m - 5; ++i) {
    const int32_t limit1 = i == 0 ? m - 4 : m - 3;
    const int32_t limit2 = i == 0 ? m - 2 : m - 1;
    for (int32_t j = i + 2; j <= limit1; ++j) {
      for (int32_t k = j + 2; k <= limit2; ++k) {
        int32_t kind = 0;
        const float gain = StepGain<kOpen>(d, v, i, j, k, &kind);
        if (kind != 0 && gain > best.gain) best = MoveAt(v, gain, kind, i, j, k);
      }
    }
  }
  return best;
}

// Whether positions i, j, k make a step of the visiting order.
bool IsStep(int32_t m, int32_t i, int32_t j, int32_t k) {
  return i >= 0 && i <= m - 5 && j >= i + 2 && j <= (i == 0 ? m - 4 : m - 3) && k >= j + 2 &&
         k <= (i == 0 ? m - 2 : m - 1);
}

// The steps that neighbour lists propose, each scored as the scan would; among equal gains the
// lowest (i, j, k) wins, as in visiting order. A two-edge case (1 to 3) has the same gain in
// every step that holds its two edges, so it is offered in the earliest such step for each of
// the three roles its edges can play.
template <bool kOpen>
ThreeOptMove BestByNeighbours(const TourMatrix& d, const NeighbourLists& near, const PassView& v) {
  const int32_t m = v.m;
  const std::vector<int32_t> pos = PositionsOf(v);
  const double widen = RoundingRadius(near, 64.0);
  float best_gain = kMinimumGain;
  int32_t best_kind = 0, bi = -1, bj = -1, bk = -1;
  auto consider = [&](int32_t i, int32_t j, int32_t k) {
    if (!IsStep(m, i, j, k)) return;
    int32_t kind = 0;
    const float gain = StepGain<kOpen>(d, v, i, j, k, &kind);
    if (kind == 0) return;
    const bool earlier = bi >= 0 && (i < bi || (i == bi && (j < bj || (j == bj && k < bk))));
    if (gain > best_gain || (gain == best_gain && earlier)) {
      best_gain = gain;
      best_kind = kind;
      bi = i, bj = j, bk = k;
    }
  };
  ForEachPairCandidate(d, near, v, pos, widen, [&](int32_t p, int32_t q) {
    consider(p, q, q + 2);  // case 2: the first and second edges
    consider(0, p, q);      // case 1: the second and third
    consider(1, p, q);
    consider(p, p + 2, q);  // case 3: the first and third
  });
  ForEachTripleCandidate(d, near, v, pos, widen, consider);
  return bi < 0 ? ThreeOptMove{} : MoveAt(v, best_gain, best_kind, bi, bj, bk);
}

void ApplyCase(Successors& next, int32_t kind, const int32_t x[6]) {
  const int32_t x1 = x[0], x2 = x[1], x3 = x[2], x4 = x[3], x5 = x[4], x6 = x[5];
  auto link = [&](int32_t from, int32_t to) { next[static_cast<std::size_t>(from)] = to; };
  switch (kind) {
    case 1: link(x3, x5); Reverse(next, x4, x6, x6); break;
    case 2: link(x1, x3); Reverse(next, x2, x4, x4); break;
    case 3: link(x1, x5); Reverse(next, x2, x6, x6); break;
    case 4: link(x1, x4); link(x5, x2); link(x3, x6); break;
    case 5: link(x1, x4); link(x5, x3); Reverse(next, x2, x6, x4); break;
    case 6: link(x1, x3); Reverse(next, x2, x5, x4); Reverse(next, x4, x6, x6); break;
    case 7: link(x1, x5); Reverse(next, x4, x2, x6); link(x3, x6); break;
    default: break;
  }
}

}  // namespace

void ThreeOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves,
                    const NeighbourLists* near) {
  if (d.Size() < 5) return;
  NeighbourLists own;
  if (near == nullptr) {
    own = NeighbourLists(d);
    near = &own;
  }
  const bool fast = near->Usable();
  for (;;) {
    const PassView view = ViewPass(d, next, open_path);
    ThreeOptMove best;
    if (fast) {
      best = open_path ? BestByNeighbours<true>(d, *near, view) : BestByNeighbours<false>(d, *near, view);
    } else {
      best = open_path ? BestByScan<true>(d, view) : BestByScan<false>(d, view);
    }
    if (!(best.gain > kMinimumGain)) return;
    ApplyCase(next, best.kind, best.x);
    if (moves != nullptr) {
      AppliedMove applied{best.kind, {}, best.gain};
      for (int q = 0; q < 6; ++q) applied.cities[q] = best.x[q];
      moves->push_back(applied);
    }
  }
}

}  // namespace gae
