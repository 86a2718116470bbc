// The 2-opt frame. On m cities, with the cycle read from city 1 as t(1..m): for i from 1 to
// m-2, j from i+2 to m (m-1 when i is 1, so that the two edges never share a city), the move
// replaces edges (t(i), t(i+1)) and (t(j), t(j+1)) by (t(i), t(j)) and (t(i+1), t(j+1)).
//
// A pass need not evaluate every move. Write a, b, c, d for t(i), t(i+1), t(j), t(j+1). If
// neither new edge is shorter than the old edge at its end (d(a,c) >= d(a,b) and
// d(b,d) >= d(c,d)), the move cannot gain: the added sum is not below the removed one, and
// for the open path the longest edge after the move is not shorter than before by more than
// the removed sum exceeds the added one. So each city looks only at the cities closer than
// its tour neighbour (neighbour lists), every such move is evaluated with the same
// arithmetic, and the earliest in visiting order still wins ties. When the values are large
// enough for 32-bit rounding to reach the 0.0001 bar, the radius widens by that rounding bound.
#include <limits>

#include "engine/local_search.h"
#include "engine/candidate_moves.h"

namespace gae {

namespace {

struct TwoOptMove {
  float gain = 0.0f;
  int32_t a = 0, b = 0, c = 0, d = 0;
};

// The gain of exchanging the edges at positions p < q: removed minus added, or for the open
// path the drop of the open length once the longest edge is cut out of the cycle before and
// after the move, (removed - L1) - (added - C), C being the longest edge after the move.
template <bool kOpen>
inline float PairGain(const TourMatrix& d, const PassView& v, int32_t p, int32_t q) {
  const int32_t* t = v.city.data();
  const int32_t a = t[p], b = t[p + 1], c = t[q], dd = t[q + 1];
  const float dac = d(a, c), dbd = d(b, dd);
  const float removed = v.edge[static_cast<std::size_t>(p)] + v.edge[static_cast<std::size_t>(q)];
  const float added = dac + dbd;
  if constexpr (!kOpen) {
    return removed - added;
  } else {
    const float longest = Larger(Larger(dac, dbd), SurvivorOfTwo(v, v.rank[static_cast<std::size_t>(p)],
                                                                 v.rank[static_cast<std::size_t>(q)]));
    return (removed - v.longest[0]) - (added - longest);
  }
}

template <bool kOpen>
TwoOptMove MoveAt(const PassView& v, float gain, int32_t p, int32_t q) {
  const int32_t* t = v.city.data();
  return {gain, t[p], t[p + 1], t[q], t[q + 1]};
}

// Every move in visiting order.
template <bool kOpen>
TwoOptMove BestByScan(const TourMatrix& d, const PassView& v) {
  TwoOptMove best;
  const int32_t m = v.m;
  for (int32_t i = 0; i <= m - 3; ++i) {
    const int32_t limit = i == 0 ? m - 2 : m - 1;
    for (int32_t j = i + 2; j <= limit; ++j) {
      const float gain = PairGain<kOpen>(d, v, i, j);
      if (gain > best.gain) best = MoveAt<kOpen>(v, gain, i, j);
    }
  }
  return best;
}

}  // namespace

namespace {

// The moves a neighbour list proposes, each scored as the scan would; among equal gains the
// lowest (i, j) wins, as in visiting order.
template <bool kOpen>
TwoOptMove BestByNeighbours(const TourMatrix& d, const NeighbourLists& near, const PassView& v) {
  const std::vector<int32_t> pos = PositionsOf(v);
  float best_gain = kMinimumGain;
  int32_t bp = -1, bq = -1;
  ForEachPairCandidate(d, near, v, pos, RoundingRadius(near, 32.0), [&](int32_t p, int32_t q) {
    const float gain = PairGain<kOpen>(d, v, p, q);
    if (gain > best_gain || (gain == best_gain && bp >= 0 && (p < bp || (p == bp && q < bq)))) {
      best_gain = gain;
      bp = p;
      bq = q;
    }
  });
  return bp < 0 ? TwoOptMove{} : MoveAt<kOpen>(v, best_gain, bp, bq);
}

}  // namespace

void TwoOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves,
                  const NeighbourLists* near) {
  if (d.Size() < 4) return;  // no two edges without a shared city
  NeighbourLists own;
  if (near == nullptr) {
    own = NeighbourLists(d);
    near = &own;
  }
  const bool fast = near->Usable();
  for (;;) {
    const PassView view = ViewPass(d, next, open_path);
    TwoOptMove best;
    if (fast) {
      best = open_path ? BestByNeighbours<true>(d, *near, view) : BestByNeighbours<false>(d, *near, view);
    } else {
      best = open_path ? BestByScan<true>(d, view) : BestByScan<false>(d, view);
    }
    if (!(best.gain > kMinimumGain)) return;
    next[static_cast<std::size_t>(best.a)] = best.c;
    Reverse(next, best.b, best.d, best.d);
    if (moves != nullptr) moves->push_back({0, {best.a, best.b, best.c, best.d, 0, 0}, best.gain});
  }
}

}  // namespace gae
