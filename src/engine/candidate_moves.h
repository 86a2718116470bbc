// The moves of a local-search pass that can pay off, found through neighbour lists.
//
// A move removes tour edges and adds as many new ones; the added and removed edges alternate
// around a closed walk. If the move gains, some rotation of that walk gains at every prefix:
// the first new edge is shorter than the old edge before it, and the first two new edges
// together are shorter than the two old edges before them plus nothing. For the open-path
// searches, where the longest edge of the cycle is cut out, the same holds with one old and
// one new edge left out, and the argument goes through with the old edge that is longest.
// So a pass proposes, for each city and each of its two tour edges, only the cities closer
// than that edge, and from there the cities closer than what is left of the gain. Every
// proposed move is then scored with the searches' own 32-bit arithmetic.
//
// Rounding: a gain is a few 32-bit sums; while the error they can carry stays within the
// 0.0001 bar, strict comparisons on the values lose nothing, otherwise each radius widens by
// that error.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "engine/local_search.h"
#include "engine/neighbour_lists.h"
#include "engine/search_pass.h"

namespace gae {

// The widening for gains of at most `ulps` units of 2^-24 of the values' scale.
inline double RoundingRadius(const NeighbourLists& near, double ulps) {
  const double error = near.Scale() * ulps * std::ldexp(1.0, -24);
  return error > static_cast<double>(kMinimumGain) ? error : 0.0;
}

// Position of each city in the pass's view of the cycle.
std::vector<int32_t> PositionsOf(const PassView& v);

// Every 2-opt move (edges at positions p < q, neither adjacent) that a new edge shorter than
// the old one beside it proposes: f(p, q), some moves possibly more than once.
template <class F>
void ForEachPairCandidate(const TourMatrix& d, const NeighbourLists& near, const PassView& v,
                          const std::vector<int32_t>& pos, double widen, F&& f) {
  const int32_t m = v.m;
  const int32_t* t = v.city.data();
  auto offer = [&](int32_t p, int32_t q) {
    if (p > q) std::swap(p, q);
    if (q - p >= 2 && !(p == 0 && q == m - 1)) f(p, q);
  };
  for (int32_t pw = 0; pw < m; ++pw) {
    const int32_t w = t[pw];
    // w and its successor against z and its successor: the new edge (w, z) is the shorter.
    near.ForEachCloser(d, w, static_cast<double>(v.edge[static_cast<std::size_t>(pw)]) + widen,
                       [&](int32_t z) { offer(pw, pos[static_cast<std::size_t>(z)]); });
    // w and its predecessor against z and its predecessor.
    const int32_t before = pw == 0 ? m - 1 : pw - 1;
    near.ForEachCloser(d, w, static_cast<double>(v.edge[static_cast<std::size_t>(before)]) + widen, [&](int32_t z) {
      const int32_t pz = pos[static_cast<std::size_t>(z)];
      offer(before, pz == 0 ? m - 1 : pz - 1);
    });
  }
}

// Every set of three edges (positions p < q < r) that a walk u1 u2 ... u6 proposes: (u1, u2)
// a tour edge, u3 closer to u2 than u1 is, (u3, u4) a tour edge, u5 closer to u4 than the
// gain so far plus d(u3, u4), (u5, u6) a tour edge. f(p, q, r) for each, possibly repeated and
// not necessarily a valid step.
template <class F>
void ForEachTripleCandidate(const TourMatrix& d, const NeighbourLists& near, const PassView& v,
                            const std::vector<int32_t>& pos, double widen, F&& f) {
  const int32_t m = v.m;
  const int32_t* t = v.city.data();
  const double slack = near.Scale() * std::ldexp(1.0, -40);  // double rounding of the sums
  auto at = [&](int32_t p) { return t[p]; };
  auto before = [&](int32_t p) { return p == 0 ? m - 1 : p - 1; };
  for (int32_t p2 = 0; p2 < m; ++p2) {
    const int32_t u2 = at(p2);
    for (int side1 = 0; side1 < 2; ++side1) {
      // The first removed edge: after u2 (position p2) or before it.
      const int32_t e1 = side1 == 0 ? p2 : before(p2);
      const double r1 = static_cast<double>(v.edge[static_cast<std::size_t>(e1)]);
      near.ForEachCloser(d, u2, r1 + widen, [&](int32_t u3) {
        const double g1 = r1 - static_cast<double>(d(u2, u3));
        const int32_t p3 = pos[static_cast<std::size_t>(u3)];
        for (int side2 = 0; side2 < 2; ++side2) {
          const int32_t e2 = side2 == 0 ? p3 : before(p3);
          const int32_t u4 = side2 == 0 ? t[p3 + 1] : at(before(p3));
          const double r2 = static_cast<double>(v.edge[static_cast<std::size_t>(e2)]);
          near.ForEachCloser(d, u4, g1 + r2 + widen + slack, [&](int32_t u5) {
            const int32_t p5 = pos[static_cast<std::size_t>(u5)];
            for (const int32_t e3 : {p5, before(p5)}) {
              int32_t a = e1, b = e2, c = e3;
              if (a > b) std::swap(a, b);
              if (b > c) std::swap(b, c);
              if (a > b) std::swap(a, b);
              f(a, b, c);
            }
          });
        }
      });
    }
  }
}

}  // namespace gae
