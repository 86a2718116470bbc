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

#include "engine/local_search.h"
#include "engine/search_pass.h"

namespace gae {

namespace {

struct ThreeOptMove {
  float gain = 0.0f;
  int32_t kind = 0;
  int32_t x[6] = {0, 0, 0, 0, 0, 0};
};

// The seven gains of one step, in case order, into a running best: the step counts with its
// largest gain (NaN cases never stand) and the lowest case reaching it.
inline void KeepStep(const float gains[7], const int32_t x[6], ThreeOptMove& best) {
  float top = -std::numeric_limits<float>::infinity();
  int32_t kind = 0;
  for (int32_t c = 0; c < 7; ++c) {
    if (gains[c] > top) {
      top = gains[c];
      kind = c + 1;
    }
  }
  if (kind != 0 && top > best.gain) {
    best.gain = top;
    best.kind = kind;
    for (int32_t q = 0; q < 6; ++q) best.x[q] = x[q];
  }
}

template <bool kOpen>
ThreeOptMove BestMove(const TourMatrix& d, const PassView& v) {
  ThreeOptMove best;
  const int32_t m = v.m;
  const int32_t* t = v.city.data();
  const float* e = v.edge.data();
  const float l1 = v.longest[0];
  for (int32_t i = 0; i <= m - 5; ++i) {
    const int32_t x1 = t[i], x2 = t[i + 1];
    const float* r1 = d.Row(x1);
    const float* r2 = d.Row(x2);
    const float d12 = e[i];
    const int32_t limit1 = i == 0 ? m - 4 : m - 3;
    const int32_t limit2 = i == 0 ? m - 2 : m - 1;
    for (int32_t j = i + 2; j <= limit1; ++j) {
      const int32_t x3 = t[j], x4 = t[j + 1];
      const float* r3 = d.Row(x3);
      const float* r4 = d.Row(x4);
      const float d34 = e[j], d13 = r1[x3], d24 = r2[x4], d14 = r1[x4];
      for (int32_t k = j + 2; k <= limit2; ++k) {
        const int32_t x5 = t[k], x6 = t[k + 1];
        const float d56 = e[k];
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
        const int32_t x[6] = {x1, x2, x3, x4, x5, x6};
        KeepStep(gains, x, best);
      }
    }
  }
  return best;
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

void ThreeOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves) {
  if (d.Size() < 5) return;
  for (;;) {
    const PassView view = ViewPass(d, next, open_path);
    const ThreeOptMove best = open_path ? BestMove<true>(d, view) : BestMove<false>(d, view);
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
