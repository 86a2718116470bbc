#include "twopoint/pure_line.h"

#include <algorithm>
#include <cmath>

namespace gae {

namespace {

constexpr float kTolerance = 0.0001f;
constexpr int kMaxRounds = 1001;
// Clear of 1/2 by far more than the rounding of one EM step.
constexpr float kPastHalf = 0.501f;

// The chances of the four kinds at r, for one pair (T float) or for lanes of pairs (T a vector
// of floats, each lane computed exactly as the float alone).
inline void Clamp01(float& p) { p = p > 1.0f ? 1.0f : (p < 0.0f ? 0.0f : p); }
template <class T>
void Clamp01(T& p) {
  const T zero{}, one = zero + 1.0f;
  p = p > one ? one : (p < zero ? zero : p);
}
template <class T>
void KindChances(int population_type, const T& r, std::array<T, 4>& p) {
  const T c = 1.0f - r, zero{};
  p.fill(zero);
  switch (population_type) {
    case 1: p = {c * c / 4.0f, r * c / 4.0f, zero, r / 8.0f}; break;
    case 2: p = {0.25f - 3.0f * r / 8.0f, r / 8.0f, zero, r / 8.0f}; break;
    case 3: p = {c * c * c / 8.0f, r * (c * c) / 8.0f, r * c / 16.0f, r / 32.0f}; break;
    case 4: {
      const T w = 1.0f + 2.0f * r;
      p = {c * c / (8.0f * w), r * c / (8.0f * w), r / (16.0f * w), r / (16.0f * w)};
      break;
    }
    default: break;
  }
  for (T& x : p) Clamp01(x);
}

// Sums of the split counts that the M-step and the LOD need, each taken cell by cell in cell
// order: their rounding is part of the estimate.
struct SplitSums {
  float total = 0.0f;              // n'
  std::array<float, 3> by_kind{};  // D0, D1, D2
};

float MStep(int type, const SplitSums& q) {
  const float n = q.total, d0 = q.by_kind[0], d1 = q.by_kind[1], d2 = q.by_kind[2];
  switch (type) {
    case 1: {
      const float s1 = n - d0, s2 = 2.0f * d0 + d1;
      return s1 / (s1 + s2);
    }
    case 2: {
      const float s1 = d0, s2 = n - d0;
      return (2.0f / 3.0f) * s2 / (s1 + s2);
    }
    case 3: {
      const float s1 = n - d0, s2 = 3.0f * d0 + 2.0f * d1 + d2;
      return s1 / (s1 + s2);
    }
    default: {
      const float s1 = n - d0, s2 = 2.0f * d0 + d1, s3 = n;
      return PureLineInbredRoot(2.0f * s3 - 2.0f * s1 - 2.0f * s2, s1 - s2 - 2.0f * s3, s1);
    }
  }
}

// Sum of count x log10 weight; weights not above 0 drop out.
float LogTerm(float count, float weight) { return weight > 0.0f ? count * std::log10(weight) : 0.0f; }

// log10 likelihood ratio of r against the baseline of weights 1/2, from the split sums.
float PureLineLod(int type, const SplitSums& q, float r) {
  const float n = q.total, d0 = q.by_kind[0], d1 = q.by_kind[1], d2 = q.by_kind[2];
  const float half = 0.5f;
  float at_r = 0.0f, base = 0.0f;
  switch (type) {
    case 1:
    case 3: {
      const float s1 = n - d0;
      const float s2 = type == 1 ? 2.0f * d0 + d1 : 3.0f * d0 + 2.0f * d1 + d2;
      at_r = LogTerm(s1, r) + LogTerm(s2, 1.0f - r);
      base = LogTerm(s1, half) + LogTerm(s2, half);
      break;
    }
    case 2:
      at_r = LogTerm(d0, 2.0f - 3.0f * r) + LogTerm(n - d0, r);
      base = LogTerm(d0, half) + LogTerm(n - d0, half);
      break;
    default: {
      const float s1 = n - d0, s2 = 2.0f * d0 + d1, s3 = n;
      at_r = LogTerm(s1, r) + LogTerm(s2, 1.0f - r) + LogTerm(s3, 1.0f / (1.0f + 2.0f * r));
      base = LogTerm(s1, half) + LogTerm(s2, half) + LogTerm(s3, half);
      break;
    }
  }
  return at_r - base;
}

int DigitOf(int founders, int32_t pattern, int founder) {
  int64_t divisor = 1;
  for (int k = founder; k < founders; ++k) divisor *= 10;
  return static_cast<int>((pattern / divisor) % 10);
}

}  // namespace

float PureLineInbredRoot(float a, float b, float c) {
  if (a == 0.0f) return b == 0.0f ? 0.5f : -c / b;
  // The stable form of the two roots avoids cancelling b against the square root.
  const float disc = b * b - 4.0f * a * c;
  if (disc < 0.0f) return 0.5f;
  const float q = -0.5f * (b + std::copysign(std::sqrt(disc), b));
  float best = 0.5f;
  bool found = false;
  for (float root : {q != 0.0f ? q / a : 0.0f, q != 0.0f ? c / q : -b / a}) {
    if (root >= 0.0f && root <= 0.5f && (!found || root < best)) {
      best = root;
      found = true;
    }
  }
  return best;
}

int PureLineCellKind(int founders, int a, int b) {
  if (a == b) return kSameFounder;
  if ((a - 1) / 2 == (b - 1) / 2) return kSisterFounders;
  if (founders == 8 && (a - 1) / 4 == (b - 1) / 4) return kSameHalf;
  return kOtherFounders;
}

namespace {

// u / w with its derivatives, w linear in r (w' given, w'' = 0).
template <class Real>
PureLineKindTerm<Real> Quotient(Real value, Real u, Real u1, Real u2, Real w, Real w1) {
  const Real f1 = (u1 * w - u * w1) / (w * w);
  return {value, f1, u2 / w - 2 * w1 * f1 / w};
}

}  // namespace

template <class Real>
std::array<PureLineKindTerm<Real>, 4> PureLineKindTerms(int population_type, Real r) {
  const Real c = Real(1) - r;
  using T = PureLineKindTerm<Real>;
  switch (population_type) {
    case 1:
      return {T{c * c / Real(4), -c / 2, Real(0.5)}, T{r * c / Real(4), (1 - 2 * r) / 4, Real(-0.5)},
              T{}, T{r / Real(8), Real(0.125), 0}};
    case 2:
      return {T{Real(0.25) - Real(3) * r / Real(8), Real(-0.375), 0}, T{r / Real(8), Real(0.125), 0}, T{},
              T{r / Real(8), Real(0.125), 0}};
    case 3:
      return {T{c * c * c / Real(8), -3 * c * c / 8, 6 * c / 8},
              T{r * c * c / Real(8), (c * c - 2 * r * c) / 8, (2 * r - 4 * c) / 8},
              T{r * c / Real(16), (1 - 2 * r) / 16, Real(-0.125)}, T{r / Real(32), Real(1) / 32, 0}};
    case 4: {
      const Real w = Real(1) + Real(2) * r;
      const T same = Quotient<Real>(c * c / (Real(8) * w), c * c / 8, -2 * c / 8, Real(2) / 8, w, 2);
      const T sister = Quotient<Real>(r * c / (Real(8) * w), r * c / 8, (1 - 2 * r) / 8, Real(-2) / 8, w, 2);
      const T other = Quotient<Real>(r / (Real(16) * w), r / 16, Real(1) / 16, 0, w, 2);
      return {same, sister, other, other};
    }
    default:
      return {};
  }
}

template std::array<PureLineKindTerm<float>, 4> PureLineKindTerms<float>(int, float);
template std::array<PureLineKindTerm<double>, 4> PureLineKindTerms<double>(int, double);

std::array<float, 4> PureLineKindChances(int population_type, float r) {
  std::array<float, 4> p;
  KindChances(population_type, r, p);
  return p;
}

std::array<uint8_t, kMaxFounders> FounderHeads(int founders, int32_t pattern) {
  std::array<uint8_t, kMaxFounders> head{};
  for (int k = 0; k < founders; ++k) {
    head[k] = static_cast<uint8_t>(k);
    const int digit = DigitOf(founders, pattern, k + 1);
    for (int j = 0; j < k; ++j) {
      if (DigitOf(founders, pattern, j + 1) == digit) {
        head[k] = static_cast<uint8_t>(j);
        break;
      }
    }
  }
  return head;
}

PureLinePairClasses BuildPairClasses(int founders, int32_t first_pattern, int32_t second_pattern) {
  PureLinePairClasses out;
  out.founders = founders;
  const int num_cells = founders * founders;
  const auto rows = FounderHeads(founders, first_pattern);
  const auto cols = FounderHeads(founders, second_pattern);
  // Class number of each head cell, -1 until the class is opened; classes in head-cell order.
  std::array<int, kMaxFounders * kMaxFounders> index{};
  index.fill(-1);
  for (int cell = 0; cell < num_cells; ++cell) {
    const int a = cell / founders, b = cell % founders;
    const int head = rows[a] * founders + cols[b];
    if (head == cell) index[head] = out.num_classes++;
    out.cell_class[cell] = static_cast<uint8_t>(index[head]);
    out.cell_kind[cell] = static_cast<uint8_t>(PureLineCellKind(founders, a + 1, b + 1));
    PureLineClass& cls = out.classes[index[head]];
    cls.head = static_cast<uint8_t>(head);
    ++cls.cells;
  }
  int next = 0;
  for (int c = 0; c < out.num_classes; ++c) {
    out.classes[c].first = static_cast<uint8_t>(next);
    next += out.classes[c].cells;
  }
  std::array<int, kMaxFounders * kMaxFounders> filled{};
  for (int cell = 0; cell < num_cells; ++cell) {
    const int c = out.cell_class[cell];
    out.class_cells[out.classes[c].first + filled[c]++] = static_cast<uint8_t>(cell);
  }
  return out;
}

namespace {

// Vectors of floats, one lane per pair: every operation on them is done lane by lane, exactly
// as on a float alone.
template <int L>
struct Lanes;
template <>
struct Lanes<1> {
  typedef float Floats __attribute__((vector_size(4)));
  typedef int32_t Mask __attribute__((vector_size(4)));
};
template <>
struct Lanes<4> {
  typedef float Floats __attribute__((vector_size(16)));
  typedef int32_t Mask __attribute__((vector_size(16)));
};

// The EM of pairs that share their class table, L at a time side by side: each pair is a lane
// with its own r, rounds and stop, a lane whose pair has stopped takes the next one, and a lane
// computes exactly what the pair alone would. The lanes keep the floating-point units busy while
// one pair's long running sums wait on themselves.
//
// The EM takes its sums in the order the estimate is defined in: cell by cell, in cell order,
// with Q = N(head) P / sum for each cell of a class of several cells. What it saves keeps every
// bit: a split is computed once for each class and kind (every cell of a kind in a class gets
// the same Q), a cell of a class without lines in any pair, whose Q is 0, adds nothing to a sum
// and is left out of the running sums (in a lane where its class is empty it adds an exact 0),
// and a pair whose r rises past 1/2 is settled at once (below).
template <int L>
void EstimateLanes(int type, const PureLinePairClasses& classes, const float* const* class_counts,
                   int pairs, PureLineEstimate* out) {
  using LaneFloats = typename Lanes<L>::Floats;
  using LaneMask = typename Lanes<L>::Mask;
  const int num_cells = classes.founders * classes.founders;
  const int num_classes = classes.num_classes;
  std::array<LaneFloats, kMaxFounders * kMaxFounders> lines{};  // by class
  std::array<bool, kMaxFounders * kMaxFounders> any_lines{};
  for (int k = 0; k < pairs; ++k)
    for (int c = 0; c < num_classes; ++c) any_lines[c] = any_lines[c] || class_counts[k][c] != 0.0f;

  // Q of each class and kind lives at slot 4 class + kind. The cells that carry lines, in cell
  // order, as slots: all of them for n', and those of each named kind for D0, D1, D2.
  std::array<uint8_t, kMaxFounders * kMaxFounders> all{};
  std::array<std::array<uint8_t, kMaxFounders * kMaxFounders>, 3> of_kind{};
  int num_all = 0;
  std::array<int, 3> num_of_kind{};
  for (int cell = 0; cell < num_cells; ++cell) {
    const int c = classes.cell_class[cell], kind = classes.cell_kind[cell];
    if (!any_lines[c]) continue;
    const auto slot = static_cast<uint8_t>(4 * c + kind);
    all[num_all++] = slot;
    if (kind < 3) of_kind[kind][num_of_kind[kind]++] = slot;
  }
  // The classes of several cells, with the kinds of their cells in cell order, and the splits
  // that their lines need: one for each kind present in a class that has lines.
  std::array<uint8_t, kMaxFounders * kMaxFounders> kinds{};
  struct Multi {
    uint8_t first, cells;
  };
  std::array<Multi, kMaxFounders * kMaxFounders> multi{};
  struct Split {
    uint8_t multi, kind, slot, cls;
  };
  std::array<Split, 4 * kMaxFounders * kMaxFounders> splits{};
  int num_multi = 0, num_splits = 0, num_kinds = 0;
  uint8_t single_kinds = 0;  // the kinds of the one-cell classes, as bits
  std::array<uint8_t, kMaxFounders * kMaxFounders> single_slots{};  // the slots of their Q
  int num_singles = 0;
  std::array<LaneFloats, 4 * kMaxFounders * kMaxFounders> q{};
  for (int c = 0; c < num_classes; ++c) {
    const PureLineClass& cls = classes.classes[c];
    if (cls.cells == 1) {
      const int kind = classes.cell_kind[cls.head];
      single_kinds |= static_cast<uint8_t>(1u << kind);
      single_slots[num_singles++] = static_cast<uint8_t>(4 * c + kind);
      continue;
    }
    uint8_t present = 0;
    multi[num_multi] = {static_cast<uint8_t>(num_kinds), cls.cells};
    for (int k = 0; k < cls.cells; ++k) {
      const uint8_t kind = classes.cell_kind[classes.class_cells[cls.first + k]];
      kinds[num_kinds++] = kind;
      present |= static_cast<uint8_t>(1u << kind);
    }
    if (any_lines[c])
      for (int kind = 0; kind < 4; ++kind)
        if (present & (1u << kind))
          splits[num_splits++] = {static_cast<uint8_t>(num_multi), static_cast<uint8_t>(kind),
                                  static_cast<uint8_t>(4 * c + kind), static_cast<uint8_t>(c)};
    ++num_multi;
  }

  enum Stop : uint8_t { kRunning, kSettled, kUninformative, kPastHalfStop, kIdle };
  std::array<Stop, L> stop;
  stop.fill(kIdle);
  std::array<int, L> rounds{}, pair_of{};
  std::array<SplitSums, L> sums{};
  LaneFloats next{}, old{};
  std::array<LaneFloats, kMaxFounders * kMaxFounders> class_sum{};
  const float flat = 1.0f / static_cast<float>(num_classes);
  // A lane whose pair has stopped hands in its estimate and takes the next pair.
  auto finish = [&](int l) {
    PureLineEstimate& e = out[pair_of[l]];
    e = PureLineEstimate{};
    if (stop[l] == kPastHalfStop) return;
    float r = (stop[l] == kUninformative || rounds[l] >= kMaxRounds) ? 0.5f : next[l];
    float lod = PureLineLod(type, sums[l], r);
    if (r < 0.0f && r > -0.5f) r = 0.0f;
    if (r > 0.5f) {
      r = 0.5f;
      lod = 0.0f;
    }
    if (lod < 0.0f) lod = 0.0f;
    // The inbred line's frequency R = 2r / (1 + 2r) back to r per meiosis.
    if (type == 2 && r > 0.0f) r = r / (2.0f * (1.0f - r));
    e = {r, lod};
  };
  int waiting = 0;  // the next pair to take a lane
  auto load = [&](int l) {
    if (waiting == pairs) {
      stop[l] = kIdle;
      return;
    }
    pair_of[l] = waiting;
    const float* counts = class_counts[waiting++];
    for (int c = 0; c < num_classes; ++c) lines[c][l] = counts[c];
    for (int k = 0; k < num_singles; ++k) q[single_slots[k]][l] = counts[single_slots[k] / 4];
    stop[l] = kRunning;
    rounds[l] = 0;
    sums[l] = SplitSums{};
    next[l] = 0.25f;
    old[l] = 0.0f;
  };
  for (int l = 0; l < L; ++l) load(l);
  for (;;) {
    bool any = false;
    for (int l = 0; l < L; ++l) {
      if (stop[l] == kRunning && !(std::fabs(next[l] - old[l]) > kTolerance && rounds[l] < kMaxRounds))
        stop[l] = kSettled;
      if (stop[l] != kRunning && stop[l] != kIdle) {
        finish(l);
        load(l);
      }
      if (stop[l] != kRunning) continue;
      any = true;
      old[l] = next[l];
      ++rounds[l];
    }
    if (!any) break;
    std::array<LaneFloats, 4> p;
    KindChances(type, old, p);
    // E-step.
    LaneMask not_flat{};
    const LaneFloats zero{};
    auto off_flat = [&](const LaneFloats& sum) {
      const LaneFloats d = sum - flat;
      not_flat |= (d > kTolerance) | (d < -kTolerance);
    };
    for (int kind = 0; kind < 4; ++kind)
      if (single_kinds & (1u << kind)) off_flat(p[kind]);
    for (int m = 0; m < num_multi; ++m) {
      LaneFloats sum{};
      const uint8_t* kind = kinds.data() + multi[m].first;
      for (int k = 0; k < multi[m].cells; ++k) sum += p[kind[k]];
      class_sum[m] = sum;
      off_flat(sum);
    }
    // Every class as likely as every other, whatever the founder cells: the pair carries no
    // information on r.
    for (int l = 0; l < L; ++l)
      if (stop[l] == kRunning && not_flat[l] == 0) stop[l] = kUninformative;
    // A class all of whose founder cells are impossible at this r (the iteration can reach the
    // edge r = 0 or r = 1 only when such a class is empty) would read 0 x 0 / 0: it has no
    // lines to split, so its cells get nothing. That is the limit of its split as r nears the
    // edge, and it lets the iteration settle at the edge: r = 0 with its LOD, or an r past 1/2
    // that is reported as 1/2 with LOD 0.
    for (int k = 0; k < num_splits; ++k) {
      const Split& s = splits[k];
      const LaneFloats sum = class_sum[s.multi];
      q[s.slot] = sum > zero ? lines[s.cls] * p[s.kind] / sum : zero;
    }
    // M-step.
    LaneFloats total{}, d0{}, d1{}, d2{};
    for (int k = 0; k < num_all; ++k) total += q[all[k]];
    for (int k = 0; k < num_of_kind[0]; ++k) d0 += q[of_kind[0][k]];
    for (int k = 0; k < num_of_kind[1]; ++k) d1 += q[of_kind[1][k]];
    for (int k = 0; k < num_of_kind[2]; ++k) d2 += q[of_kind[2][k]];
    for (int l = 0; l < L; ++l) {
      if (stop[l] != kRunning) continue;
      sums[l] = {total[l], {d0[l], d1[l], d2[l]}};
      next[l] = MStep(type, sums[l]);
      // A rising r past 1/2 (but for the eight-way inbred lines' root, which never passes 1/2)
      // ends as a pair reported unlinked, r 1/2 and LOD 0, whatever rounds remain: a larger r
      // moves every class's split towards the kinds of more recombination, which raises the
      // next r, so the rounds keep rising (by far more than their rounding could undo) until
      // they settle, run out or find the pair uninformative, and each reports exactly that.
      if (type != 4 && next[l] > old[l] && next[l] > kPastHalf) stop[l] = kPastHalfStop;
    }
  }
}

}  // namespace

void EstimatePureLinePairs(int type, const PureLinePairClasses& classes, const float* const* class_counts,
                           int pairs, PureLineEstimate* out) {
  if (PureLineFounders(type) == 0 || classes.num_classes == 0) {
    for (int k = 0; k < pairs; ++k) out[k] = PureLineEstimate{};
    return;
  }
  // A pair alone takes the one-lane form, which does the same operations without the idle lanes.
  if (pairs == 1) EstimateLanes<1>(type, classes, class_counts, 1, out);
  else EstimateLanes<kPureLineLanes>(type, classes, class_counts, pairs, out);
}

PureLineEstimate EstimatePureLinePair(int type, const PureLinePairClasses& classes,
                                      const float* class_counts) {
  PureLineEstimate out;
  EstimatePureLinePairs(type, classes, &class_counts, 1, &out);
  return out;
}

namespace {

PureLineEstimate CountAndEstimate(int type, int founders, int64_t n, int32_t first_pattern,
                                  int32_t second_pattern, const char* first, const char* second) {
  std::array<float, kMaxFounders * kMaxFounders> cells{};
  for (int64_t i = 0; i < n; ++i) {
    const int a = first[i] - 'A', b = second[i] - 'A';
    if (a < 0 || a >= founders || b < 0 || b >= founders) continue;
    cells[a * founders + b] += 1.0f;
  }
  const PureLinePairClasses classes = BuildPairClasses(founders, first_pattern, second_pattern);
  // Only the head's count is split: the reader's letters put every observed count there.
  std::array<float, kMaxFounders * kMaxFounders> counts{};
  for (int c = 0; c < classes.num_classes; ++c) counts[c] = cells[classes.classes[c].head];
  return EstimatePureLinePair(type, classes, counts.data());
}

}  // namespace

PureLineEstimate PLMPairFourWay(int population_type, int64_t num_individuals,
                                int32_t first_pattern, int32_t second_pattern,
                                const char* first_letters, const char* second_letters) {
  return CountAndEstimate(population_type, 4, num_individuals, first_pattern, second_pattern,
                          first_letters, second_letters);
}

PureLineEstimate PLMPairEightWay(int population_type, int64_t num_individuals,
                                 int32_t first_pattern, int32_t second_pattern,
                                 const char* first_letters, const char* second_letters) {
  return CountAndEstimate(population_type, 8, num_individuals, first_pattern, second_pattern,
                          first_letters, second_letters);
}

}  // namespace gae
