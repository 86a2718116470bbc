#include "engine/path_moves.h"

#include <algorithm>
#include <cmath>

namespace gae {

namespace {

// Below this a gain is rounding, and taking it could cycle.
constexpr double kLeastGain = 1e-7;

// The path being improved and each city's position on it.
struct PathState {
  const TourMatrix& d;
  std::vector<int32_t>& order;
  std::vector<int32_t> pos;
  int32_t n() const { return static_cast<int32_t>(order.size()); }
  int32_t At(int32_t p) const { return p >= 0 && p < n() ? order[static_cast<size_t>(p)] : 0; }
  // The value of an edge; an edge to no city (past an end of the path) costs nothing.
  double Edge(int32_t a, int32_t b) const {
    if (a <= 0 || b <= 0) return 0.0;
    const float v = d(a, b);
    return std::isnan(v) ? 1e9 : static_cast<double>(v);
  }
  void Reposition(int32_t from, int32_t to) {
    for (int32_t p = from; p <= to; ++p) pos[static_cast<size_t>(order[static_cast<size_t>(p)])] = p;
  }
};

// Reversing positions i..j: the edges at its two ends are exchanged.
double ReversalGain(const PathState& s, int32_t i, int32_t j) {
  if (i >= j || (i == 0 && j == s.n() - 1)) return 0.0;
  const int32_t before = s.At(i - 1), first = s.At(i), last = s.At(j), after = s.At(j + 1);
  return s.Edge(before, first) + s.Edge(last, after) - s.Edge(before, last) - s.Edge(first, after);
}

// A 2-opt move that makes a and c neighbours, if one gains.
bool TryReversal(PathState& s, int32_t a, int32_t c) {
  const int32_t p = s.pos[static_cast<size_t>(a)], q = s.pos[static_cast<size_t>(c)];
  const int32_t spans[4][2] = {{p + 1, q}, {q + 1, p}, {p, q - 1}, {q, p - 1}};
  for (const auto& span : spans) {
    const int32_t i = span[0], j = span[1];
    if (i < 0 || j >= s.n() || ReversalGain(s, i, j) <= kLeastGain) continue;
    std::reverse(s.order.begin() + i, s.order.begin() + j + 1);
    s.Reposition(i, j);
    return true;
  }
  return false;
}

// Lifting positions i..j out and putting them beside c, with a next to c (a an end of the
// stretch, c outside it).
double InsertionGain(const PathState& s, int32_t i, int32_t j, int32_t a, int32_t c, bool after_c) {
  const int32_t before = s.At(i - 1), after = s.At(j + 1);
  const double lifted = s.Edge(before, s.At(i)) + s.Edge(s.At(j), after) - s.Edge(before, after);
  const int32_t other = a == s.At(i) ? s.At(j) : s.At(i);
  // c's neighbour on the chosen side once the stretch is gone.
  int32_t q = s.pos[static_cast<size_t>(c)] + (after_c ? 1 : -1);
  if (q >= i && q <= j) q = after_c ? j + 1 : i - 1;
  const int32_t beside = s.At(q);
  return lifted - (s.Edge(c, a) + s.Edge(other, beside) - s.Edge(c, beside));
}

void MoveStretch(PathState& s, int32_t i, int32_t j, int32_t a, int32_t c, bool after_c) {
  std::vector<int32_t> stretch(s.order.begin() + i, s.order.begin() + j + 1);
  // Laid down so that a touches c: a first when it goes after c, last when before.
  if ((stretch.front() == a) != after_c) std::reverse(stretch.begin(), stretch.end());
  s.order.erase(s.order.begin() + i, s.order.begin() + j + 1);
  const auto at = std::find(s.order.begin(), s.order.end(), c) + (after_c ? 1 : 0);
  s.order.insert(at, stretch.begin(), stretch.end());
  s.Reposition(0, s.n() - 1);
}

// An or-move of a stretch of up to kLongestStretch cities ending at a, to beside c, if one
// gains: a block of markers put in the wrong place as a whole moves back in one step.
constexpr int32_t kLongestStretch = 32;
bool TryInsertion(PathState& s, int32_t a, int32_t c) {
  const int32_t p = s.pos[static_cast<size_t>(a)], q = s.pos[static_cast<size_t>(c)];
  for (int32_t length = 1; length <= kLongestStretch; ++length) {
    for (const int32_t i : {p, p - length + 1}) {
      const int32_t j = i + length - 1;
      if (i < 0 || j >= s.n() || (q >= i && q <= j) || length >= s.n() - 1) continue;
      for (const bool after_c : {true, false}) {
        if (InsertionGain(s, i, j, a, c, after_c) <= kLeastGain) continue;
        MoveStretch(s, i, j, a, c, after_c);
        return true;
      }
    }
  }
  return false;
}

// The best reversal of a whole end of the path, against every city: its one new edge need not
// join near neighbours, so the lists would miss it.
bool TryEndReversal(PathState& s) {
  double best = kLeastGain;
  int32_t from = 0, to = -1;
  for (int32_t j = 0; j + 1 < s.n(); ++j) {
    if (const double g = ReversalGain(s, 0, j); g > best) best = g, from = 0, to = j;
    if (const double g = ReversalGain(s, j + 1, s.n() - 1); g > best) best = g, from = j + 1, to = s.n() - 1;
  }
  if (to < 0) return false;
  std::reverse(s.order.begin() + from, s.order.begin() + to + 1);
  s.Reposition(from, to);
  return true;
}

// An end city lifted and put into the gap anywhere on the path where it costs least, if that
// gains: a marker whose pairs say little tends to be left at an end, and an end turned round
// (above) then only meets it.
bool TryEndRelocation(PathState& s) {
  for (const bool front : {true, false}) {
    const int32_t e = front ? s.At(0) : s.At(s.n() - 1);
    const double lifted = s.Edge(e, front ? s.At(1) : s.At(s.n() - 2));
    double best = lifted - kLeastGain;
    int32_t gap = -1;  // insert before position gap of the path without e
    const int32_t from = front ? 1 : 0, to = front ? s.n() : s.n() - 1;  // the rest: positions from..to-1
    for (int32_t p = from; p <= to; ++p) {
      const int32_t u = p > from ? s.At(p - 1) : 0, v = p < to ? s.At(p) : 0;
      const double cost = s.Edge(u, e) + s.Edge(e, v) - s.Edge(u, v);
      if (cost < best) best = cost, gap = p;
    }
    if (gap < 0) continue;
    s.order.erase(s.order.begin() + (front ? 0 : s.n() - 1));
    s.order.insert(s.order.begin() + (front ? gap - 1 : gap), e);
    s.Reposition(0, s.n() - 1);
    return true;
  }
  return false;
}

}  // namespace

double PathLength(const TourMatrix& d, const std::vector<int32_t>& order) {
  double sum = 0.0;
  for (size_t p = 1; p < order.size(); ++p) {
    const float v = d(order[p - 1], order[p]);
    sum += std::isnan(v) ? 1e9 : static_cast<double>(v);
  }
  return sum;
}

int64_t ImprovePath(const TourMatrix& d, const std::vector<int32_t>& near, int32_t k, std::vector<int32_t>& order) {
  PathState s{d, order, std::vector<int32_t>(static_cast<size_t>(d.Size()) + 1, 0)};
  s.Reposition(0, s.n() - 1);
  int64_t moves = 0;
  for (bool improved = s.n() > 2; improved;) {
    improved = false;
    for (int32_t a = 1; a <= d.Size(); ++a)
      for (int32_t r = 0; r < k; ++r) {
        const int32_t c = near[static_cast<size_t>(a - 1) * static_cast<size_t>(k) + static_cast<size_t>(r)];
        if (c <= 0) break;
        if (TryReversal(s, a, c) || TryInsertion(s, a, c)) ++moves, improved = true;
      }
    while (TryEndReversal(s) || TryEndRelocation(s)) ++moves, improved = true;
  }
  return moves;
}

}  // namespace gae
