#include "twopoint/pure_line.h"

#include <cmath>

namespace gae {

namespace {

constexpr float kTolerance = 0.0001f;
constexpr int kMaxRounds = 1001;
// Clear of 1/2 by far more than the rounding of one EM step.
constexpr float kPastHalf = 0.501f;

float Clamp01(float p) { return p > 1.0f ? 1.0f : (p < 0.0f ? 0.0f : p); }

// Sums of the split counts that the M-step and the LOD need.
struct SplitSums {
  float total = 0.0f;  // n'
  std::array<float, 4> by_kind{};  // D0, D1, D2 and the rest
};

// Type 4: the root of a r^2 + b r + c = 0 that maximises the likelihood, the smallest in
// 0..0.5. The stable form of the two roots avoids cancelling b against the square root.
float EightWayInbredRoot(float a, float b, float c) {
  if (a == 0.0f) return b == 0.0f ? 0.5f : -c / b;
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
      return EightWayInbredRoot(2.0f * s3 - 2.0f * s1 - 2.0f * s2, s1 - s2 - 2.0f * s3, s1);
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
  const std::array<PureLineKindTerm<float>, 4> terms = PureLineKindTerms<float>(population_type, r);
  std::array<float, 4> p{};
  for (int k = 0; k < 4; ++k) p[k] = Clamp01(terms[k].p);
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
  const auto rows = FounderHeads(founders, first_pattern);
  const auto cols = FounderHeads(founders, second_pattern);
  // Class number of each head cell, -1 until the class is opened; classes in head-cell order.
  std::array<int, kMaxFounders * kMaxFounders> index{};
  index.fill(-1);
  for (int a = 0; a < founders; ++a) {
    for (int b = 0; b < founders; ++b) {
      const int head = rows[a] * founders + cols[b];
      if (head == a * founders + b) index[head] = out.num_classes++;
    }
  }
  for (int a = 0; a < founders; ++a) {
    for (int b = 0; b < founders; ++b) {
      const int head = rows[a] * founders + cols[b];
      PureLineClass& cls = out.classes[index[head]];
      cls.head = static_cast<uint8_t>(head);
      ++cls.cells;
      ++cls.kinds[PureLineCellKind(founders, a + 1, b + 1)];
    }
  }
  for (int c = 0; c < out.num_classes; ++c) {
    PureLineClass& cls = out.classes[c];
    int k = 0;
    while (k < out.num_compositions && !(out.compositions[k].cells == cls.cells &&
                                         out.compositions[k].kinds[0] == cls.kinds[0] &&
                                         out.compositions[k].kinds[1] == cls.kinds[1] &&
                                         out.compositions[k].kinds[2] == cls.kinds[2] &&
                                         out.compositions[k].kinds[3] == cls.kinds[3]))
      ++k;
    if (k == out.num_compositions) {
      PureLineComposition& comp = out.compositions[out.num_compositions++];
      comp.cells = cls.cells;
      for (int kind = 0; kind < 4; ++kind) comp.kinds[kind] = static_cast<float>(cls.kinds[kind]);
    }
    cls.composition = static_cast<uint8_t>(k);
  }
  return out;
}

PureLineEstimate EstimatePureLinePair(int type, const PureLinePairClasses& classes,
                                      const float* class_counts) {
  PureLineEstimate out;
  if (PureLineFounders(type) == 0 || classes.num_classes == 0) return out;

  // A class of one cell keeps its count whatever r is: its share of the sums is fixed. The
  // classes of more cells are taken together by composition.
  SplitSums fixed;
  std::array<float, kMaxFounders * kMaxFounders> pooled{};
  for (int c = 0; c < classes.num_classes; ++c) {
    const PureLineClass& cls = classes.classes[c];
    fixed.total += class_counts[c];
    if (cls.cells == 1) {
      for (int k = 0; k < 4; ++k)
        if (cls.kinds[k] != 0) fixed.by_kind[k] += class_counts[c];
    } else {
      pooled[cls.composition] += class_counts[c];
    }
  }
  const int n_comp = classes.num_compositions;
  const PureLineComposition* comp = classes.compositions.data();
  const float flat = 1.0f / static_cast<float>(classes.num_classes);

  float next = 0.25f, old = 0.0f;
  int rounds = 0;
  bool uninformative = false, past_half = false;
  SplitSums q = fixed;
  while (std::fabs(next - old) > kTolerance && rounds < kMaxRounds) {
    old = next;
    ++rounds;
    const std::array<float, 4> p = PureLineKindChances(type, old);
    // E-step. A founder cell's chance depends on its kind alone, so a class hands each kind its
    // count times (cells of that kind x chance) over the class's sum of chances.
    bool all_flat = true;
    std::array<float, 4> share{};
    for (int s = 0; s < n_comp; ++s) {
      const float sum = comp[s].kinds[0] * p[0] + comp[s].kinds[1] * p[1] +
                        comp[s].kinds[2] * p[2] + comp[s].kinds[3] * p[3];
      if (std::fabs(sum - flat) > kTolerance) all_flat = false;
      // A class that is impossible at this r has no count to split (the iteration reaches such
      // an r only when the class is empty); its cells then get nothing.
      if (comp[s].cells == 1 || pooled[s] == 0.0f || !(sum > 0.0f)) continue;
      const float f = pooled[s] / sum;
      for (int k = 0; k < 4; ++k) share[k] += f * comp[s].kinds[k];
    }
    // Every class as likely as every other, whatever the founder cells: the pair carries no
    // information on r.
    if (all_flat) {
      uninformative = true;
      break;
    }
    for (int k = 0; k < 4; ++k) q.by_kind[k] = fixed.by_kind[k] + share[k] * p[k];
    next = MStep(type, q);
    // In one parameter the EM step is monotone (a larger r shifts every class's split towards
    // the recombinant kinds), so a rising sequence past 1/2 ends past 1/2: the pair is reported
    // unlinked whatever rounds remain. The eight-way inbred root never passes 1/2.
    if (type != 4 && next > old && next > kPastHalf) {
      past_half = true;
      break;
    }
  }
  if (past_half) return out;
  float r = (uninformative || rounds >= kMaxRounds) ? 0.5f : next;
  float lod = PureLineLod(type, q, r);

  if (r < 0.0f && r > -0.5f) r = 0.0f;
  if (r > 0.5f) {
    r = 0.5f;
    lod = 0.0f;
  }
  if (lod < 0.0f) lod = 0.0f;
  // The inbred line's frequency R = 2r / (1 + 2r) back to r per meiosis.
  if (type == 2 && r > 0.0f) r = r / (2.0f * (1.0f - r));
  out.rec_freq = r;
  out.lod = lod;
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
