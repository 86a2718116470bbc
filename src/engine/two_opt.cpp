// The 2-opt frame. On m cities, with the cycle read from city 1 as t(1..m): for i from 1 to
// m-2, j from i+2 to m (m-1 when i is 1, so that the two edges never share a city), the move
// replaces edges (t(i), t(i+1)) and (t(j), t(j+1)) by (t(i), t(j)) and (t(i+1), t(j+1)).
#include "engine/local_search.h"
#include "engine/search_pass.h"

namespace gae {

namespace {

struct TwoOptMove {
  float gain = 0.0f;
  int32_t a = 0, b = 0, c = 0, d = 0;
};

// Gain: removed minus added.
TwoOptMove BestClosedMove(const TourMatrix& d, const PassView& v) {
  TwoOptMove best;
  const int32_t m = v.m;
  const int32_t* t = v.city.data();
  const float* e = v.edge.data();
  for (int32_t i = 0; i <= m - 3; ++i) {
    const int32_t a = t[i], b = t[i + 1];
    const float* ra = d.Row(a);
    const float* rb = d.Row(b);
    const float dab = e[i];
    const int32_t limit = i == 0 ? m - 2 : m - 1;
    for (int32_t j = i + 2; j <= limit; ++j) {
      const int32_t c = t[j], dd = t[j + 1];
      const float gain = (dab + e[j]) - (ra[c] + rb[dd]);
      if (gain > best.gain) best = {gain, a, b, c, dd};
    }
  }
  return best;
}

// Gain: the drop of the open length once the longest edge is cut out of the cycle before and
// after the move, (removed - L1) - (added - C), C being the longest edge after the move.
TwoOptMove BestOpenMove(const TourMatrix& d, const PassView& v) {
  TwoOptMove best;
  const int32_t m = v.m;
  const int32_t* t = v.city.data();
  const float* e = v.edge.data();
  const int8_t* rank = v.rank.data();
  const float l1 = v.longest[0];
  for (int32_t i = 0; i <= m - 3; ++i) {
    const int32_t a = t[i], b = t[i + 1];
    const float* ra = d.Row(a);
    const float* rb = d.Row(b);
    const float dab = e[i];
    const int8_t rab = rank[i];
    const int32_t limit = i == 0 ? m - 2 : m - 1;
    for (int32_t j = i + 2; j <= limit; ++j) {
      const int32_t c = t[j], dd = t[j + 1];
      const float dac = ra[c], dbd = rb[dd];
      const float removed = dab + e[j];
      const float added = dac + dbd;
      const float longest = Larger(Larger(dac, dbd), SurvivorOfTwo(v, rab, rank[j]));
      const float gain = (removed - l1) - (added - longest);
      if (gain > best.gain) best = {gain, a, b, c, dd};
    }
  }
  return best;
}

}  // namespace

void TwoOptPasses(const TourMatrix& d, Successors& next, bool open_path, MoveLog* moves) {
  if (d.Size() < 4) return;  // no two edges without a shared city
  for (;;) {
    const PassView view = ViewPass(d, next, open_path);
    const TwoOptMove best = open_path ? BestOpenMove(d, view) : BestClosedMove(d, view);
    if (!(best.gain > kMinimumGain)) return;
    next[static_cast<std::size_t>(best.a)] = best.c;
    Reverse(next, best.b, best.d, best.d);
    if (moves != nullptr) moves->push_back({0, {best.a, best.b, best.c, best.d, 0, 0}, best.gain});
  }
}

}  // namespace gae
