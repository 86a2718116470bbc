#include "engine/frame_ordering.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <vector>

#include "engine/rippling.h"

namespace gae {

namespace {

// Beyond this frequency a distance estimate is too noisy to place anything: at 0.4 a Kosambi
// distance is about 55 cM and a small error in the frequency moves it by tens of cM.
constexpr float kInformativeFrequency = 0.4f;

// Re-placement rounds at most; they usually end after a few, when a round moves nothing.
constexpr int kMaxRounds = 20;

// Running sums of w, w*c and w*c^2 over partners on one side: a side's pull on the placed
// marker is the quadratic S0 t^2 - 2 S1 t + S2.
struct Sums {
  double s0 = 0.0, s1 = 0.0, s2 = 0.0;
  void Add(double w, double c, double sign) {
    s0 += sign * w;
    s1 += sign * w * c;
    s2 += sign * w * c * c;
  }
};

// How much a pair's distance estimate counts in the fit. Its LOD says how much the pair's
// genotypes inform (little for a dominant beside a recessive marker); the factor in r says
// how far its distance can be trusted: a long distance is both noisier and, when the mapping
// function does not match the crossing-over in the data, biased short. Weighed by the LOD
// alone, the many long pairs of a dense group pulled each placed marker a few cM inward and
// interleaved neighbours (a 150 cM chromosome of 300 markers came out at 467 cM, 174 cM with
// this weight), while sparse mixed data order as well as before.
double PairWeight(float lod, float r) {
  const double sure = static_cast<double>(lod) * (1.0 - 2.0 * static_cast<double>(r));
  return sure * sure;
}

struct Pull {
  double w = 0.0;   // the pair's weight, 0 when it says nothing
  double d = 0.0;   // its distance estimate in cM
};

// Only the strongest pairs place a marker: a dozen are enough to average out the error of any
// one, and are the nearest informative partners. In a dense group the hundreds of weaker,
// longer pairs would otherwise outvote them, each a little biased, and interleave neighbours
// (a 150 cM chromosome of 1,000 markers came out at 270 cM with all pairs, 155 cM with these).
constexpr std::size_t kStrongestPairs = 12;

void KeepStrongest(std::vector<Pull>& pull) {
  std::vector<double> w;
  for (const Pull& p : pull)
    if (p.w > 0.0) w.push_back(p.w);
  if (w.size() <= kStrongestPairs) return;
  std::nth_element(w.begin(), w.begin() + (kStrongestPairs - 1), w.end(), std::greater<double>());
  const double cut = w[kStrongestPairs - 1];
  for (Pull& p : pull)
    if (p.w < cut) p.w = 0.0;
}

}  // namespace

Placement BestPlacement(const PairTable& table, int32_t marker, const int32_t* partners, const float* positions,
                        int32_t count) {
  std::vector<Pull> pull(static_cast<std::size_t>(count));
  // A partner to the right of t wants t at p - d; to the left at p + d. Gap g has the first g
  // partners on its left, and within it the misfit is one quadratic in t.
  Sums left, right;
  for (int32_t k = 0; k < count; ++k) {
    const float r = table.Second(marker, partners[k]);
    const float lod = -table.First(marker, partners[k]);
    if (!(r < kInformativeFrequency) || !(lod > 0.0f)) continue;
    Pull& p = pull[static_cast<std::size_t>(k)];
    p.w = PairWeight(lod, r);
    p.d = table.Distance(marker, partners[k]);
  }
  KeepStrongest(pull);
  for (int32_t k = 0; k < count; ++k) {
    const Pull& p = pull[static_cast<std::size_t>(k)];
    if (p.w > 0.0) right.Add(p.w, positions[k] - p.d, 1.0);
  }
  Placement best;
  if (right.s0 <= 0.0) return best;
  const double inf = std::numeric_limits<double>::infinity();
  for (int32_t g = 0; g <= count; ++g) {
    if (g > 0) {
      const Pull& p = pull[static_cast<std::size_t>(g - 1)];
      if (p.w > 0.0) {
        right.Add(p.w, positions[g - 1] - p.d, -1.0);
        left.Add(p.w, positions[g - 1] + p.d, 1.0);
      }
    }
    const double s0 = left.s0 + right.s0, s1 = left.s1 + right.s1, s2 = left.s2 + right.s2;
    const double lo = g > 0 ? positions[g - 1] : -inf, hi = g < count ? positions[g] : inf;
    const double t = std::clamp(s1 / s0, lo, hi);
    const double misfit = std::max(0.0, s0 * t * t - 2.0 * s1 * t + s2);
    if (best.gap < 0 || misfit < best.misfit) {
      best.gap = g;
      best.t = static_cast<float>(t);
      best.misfit = misfit;
    }
  }
  return best;
}

namespace {

struct Placed {
  int32_t marker;
  float t;
  bool frame;
};

// The frame markers at their positions, each other marker in the gap where its pairs with
// the frame fit best, ordered by its place inside the gap. A marker that no frame pair
// informs goes last: later rounds move it next to the inserted markers it is linked to.
std::vector<Placed> InsertIntoFrame(const PairTable& table, const std::vector<int32_t>& frame,
                                    const std::vector<float>& frame_position, const std::vector<int32_t>& others) {
  const int32_t k = static_cast<int32_t>(frame.size());
  std::vector<std::vector<Placed>> gaps(static_cast<std::size_t>(k) + 1);
  for (const int32_t x : others) {
    const Placement p = BestPlacement(table, x, frame.data(), frame_position.data(), k);
    if (p.gap < 0) gaps.back().push_back({x, frame_position.back(), false});
    else gaps[static_cast<std::size_t>(p.gap)].push_back({x, p.t, false});
  }
  std::vector<Placed> order;
  for (int32_t g = 0; g <= k; ++g) {
    std::vector<Placed>& in_gap = gaps[static_cast<std::size_t>(g)];
    std::stable_sort(in_gap.begin(), in_gap.end(), [](const Placed& a, const Placed& b) { return a.t < b.t; });
    order.insert(order.end(), in_gap.begin(), in_gap.end());
    if (g < k) order.push_back({frame[static_cast<std::size_t>(g)], frame_position[static_cast<std::size_t>(g)], true});
  }
  return order;
}

// The ripple of a framed group, by the criterion the insertion used: each inserted marker in
// turn is taken out and put back where its pairs with all the others (frame and inserted)
// fit best. Each move lowers the misfit of the marker moved; the rounds stop when a round
// moves nothing (the strongest pairs of two markers need not be each other's, so a bound on
// the rounds keeps a rare back-and-forth from going on).
void Replace(const PairTable& table, std::vector<Placed>& order) {
  std::vector<int32_t> partners;
  std::vector<float> positions;
  for (int round = 0; round < kMaxRounds; ++round) {
    bool moved = false;
    std::vector<int32_t> inserted;
    for (const Placed& p : order)
      if (!p.frame) inserted.push_back(p.marker);
    for (const int32_t x : inserted) {
      const auto at = std::find_if(order.begin(), order.end(), [x](const Placed& p) { return p.marker == x; });
      const std::size_t was = static_cast<std::size_t>(at - order.begin());
      const Placed self = *at;
      order.erase(at);
      partners.clear();
      positions.clear();
      for (const Placed& p : order) {
        partners.push_back(p.marker);
        positions.push_back(p.t);
      }
      const Placement best = BestPlacement(table, x, partners.data(), positions.data(), static_cast<int32_t>(order.size()));
      if (best.gap < 0) {
        order.insert(order.begin() + static_cast<std::ptrdiff_t>(was), self);
        continue;
      }
      const std::size_t to = static_cast<std::size_t>(best.gap);
      order.insert(order.begin() + static_cast<std::ptrdiff_t>(to), {x, best.t, false});
      moved = moved || to != was;
    }
    if (!moved) break;
  }
}

}  // namespace

FrameOrderingResult OrderAroundFrame(const PairTable& table, const FrameOrderingOptions& options, int32_t n,
                                     const int32_t* group_kind, int32_t* group_order, float* group_position,
                                     UniformStream& random, const StartSink& sink) {
  FrameOrderingResult result;
  std::vector<int32_t> frame, others;
  for (int32_t i = 0; i < n; ++i) (group_kind[i] == 1 ? frame : others).push_back(group_order[i]);
  result.frame_size = static_cast<int32_t>(frame.size());
  if (n < 2) {
    if (n == 1) group_position[0] = 0.0f;
    return result;
  }
  const std::vector<int32_t> no_anchor(static_cast<std::size_t>(n), 0);
  if (result.frame_size < std::max(options.min_frame, 2)) {
    OrderGroup(table, options.frame, n, no_anchor.data(), group_order, group_position, random, sink);
    RippleGroup(table, options.ripple_by, options.window_size, n, group_order, group_position);
    return result;
  }
  result.framed = true;
  std::vector<float> frame_position(frame.size());
  // The frame is ordered and rippled as any group is, so that co-dominant data come out as
  // they would by default.
  OrderGroup(table, options.frame, result.frame_size, no_anchor.data(), frame.data(), frame_position.data(), random,
             sink);
  RippleGroup(table, options.ripple_by, options.window_size, result.frame_size, frame.data(), frame_position.data());
  std::vector<Placed> order = InsertIntoFrame(table, frame, frame_position, others);
  Replace(table, order);
  for (int32_t i = 0; i < n; ++i) group_order[i] = order[static_cast<std::size_t>(i)].marker;
  ComputePositions(table, n, group_order, group_position);
  return result;
}

}  // namespace gae
