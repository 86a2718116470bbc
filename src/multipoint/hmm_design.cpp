#include "multipoint/hmm_design.h"

#include <algorithm>
#include <cmath>

#include "multipoint/founder_design.h"
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// Genotype classes kept as states by each type: the recurrent parent's class and the
// heterozygote in backcrosses, the two homozygotes in lines, all three after selfing.
int ClassStates(int32_t type, std::array<int8_t, kMaxChainStates>& classes) {
  switch (type) {
    case 1: case 9: classes = {0, 1, 0, 0}; return 2;
    case 2: case 10: classes = {1, 2, 0, 0}; return 2;
    case 3: case 4: case 5: case 6: case 11: case 12:
    case 17: case 18: case 19: case 20: classes = {0, 2, 0, 0}; return 2;
    case 8: case 13: case 14: case 15: case 16: classes = {0, 1, 2, 0}; return 3;
    default: return 0;
  }
}

// Two-locus joint distribution over the design's states, from the two-point model of a pair of
// codominant markers (rows the first marker's class A, H, B; columns the second's).
void JointTable(const HmmDesign& d, double r, double* joint) {
  const float no_counts[9] = {};
  double cells[9] = {};
  TwoPointModel<double>(d.population_type, 11, no_counts, r, cells, nullptr, nullptr);
  const int n = d.num_states;
  for (int s = 0; s < n; ++s)
    for (int t = 0; t < n; ++t) joint[s * kMaxChainStates + t] = cells[3 * d.state_class[s] + d.state_class[t]];
}

double ExpectedLog(const HmmDesign& d, const double* expected, double r) {
  double t[kMaxChainStates * kMaxChainStates];
  TransitionMatrix(d, r, t);
  double q = 0;
  for (int s = 0; s < d.num_states; ++s)
    for (int u = 0; u < d.num_states; ++u) {
      const int k = s * kMaxChainStates + u;
      if (expected[k] > 0) q += expected[k] * std::log(std::max(t[k], 1e-300));
    }
  return q;
}

}  // namespace

HmmDesign MakeHmmDesign(int32_t type) {
  HmmDesign d;
  d.population_type = type;
  if (type == 7) {
    // State 2a + b: a the allele received from the first F1 parent, b from the second (1 = P2's).
    d.num_states = 4;
    d.num_classes = 3;
    d.counted = true;
    d.meioses = 2;
    for (int s = 0; s < 4; ++s) {
      d.state_class[s] = static_cast<int8_t>(s / 2 + s % 2);
      d.initial[s] = 0.25;
      for (int t = 0; t < 4; ++t) d.switches[s * kMaxChainStates + t] = static_cast<int8_t>((s / 2 != t / 2) + (s % 2 != t % 2));
    }
    return d;
  }
  d.num_states = ClassStates(type, d.state_class);
  if (d.num_states == 0) return d;
  d.num_classes = d.num_states;
  if (type >= 1 && type <= 4) {
    d.counted = true;
    d.expanded = type == 4;
    d.meioses = 1;
    d.initial = {0.5, 0.5, 0, 0};
    d.switches[1] = d.switches[kMaxChainStates] = 1;
    return d;
  }
  double joint[kMaxChainStates * kMaxChainStates];
  JointTable(d, 0.25, joint);  // the margins do not depend on r
  for (int s = 0; s < d.num_states; ++s) {
    d.initial[s] = 0;
    for (int t = 0; t < d.num_states; ++t) d.initial[s] += joint[s * kMaxChainStates + t];
  }
  return d;
}

void TransitionMatrix(const HmmDesign& d, double r, double* m) {
  const int n = d.num_states;
  if (d.founders > 0) {
    FounderTransitions(d, r, m);
    return;
  }
  if (d.counted) {
    const double q = d.expanded ? 2 * r / (1 + 2 * r) : r;
    double power[3] = {1, q, q * q};
    double stay[3] = {1, 1 - q, (1 - q) * (1 - q)};
    for (int s = 0; s < n; ++s)
      for (int t = 0; t < n; ++t) {
        const int k = s * kMaxChainStates + t;
        m[k] = power[d.switches[k]] * stay[d.meioses - d.switches[k]];
      }
    return;
  }
  JointTable(d, r, m);
  for (int s = 0; s < n; ++s)
    for (int t = 0; t < n; ++t) m[s * kMaxChainStates + t] /= d.initial[s];
}

double MaximiseInterval(const HmmDesign& d, const double* expected, double r_max) {
  if (d.counted) {
    double total = 0, switched = 0;
    for (int s = 0; s < d.num_states; ++s)
      for (int t = 0; t < d.num_states; ++t) {
        const int k = s * kMaxChainStates + t;
        total += expected[k];
        switched += expected[k] * d.switches[k];
      }
    if (!(total > 0)) return r_max;
    const double q = switched / (total * d.meioses);
    const double r = d.expanded ? (q >= 0.5 ? 0.5 : q / (2 * (1 - q))) : q;
    return std::clamp(r, 0.0, r_max);
  }
  // Golden-section search: the expected log-likelihood of one interval is unimodal in r.
  const double g = 0.5 * (std::sqrt(5.0) - 1);
  double a = 0, b = r_max;
  double x1 = b - g * (b - a), x2 = a + g * (b - a);
  double f1 = ExpectedLog(d, expected, x1), f2 = ExpectedLog(d, expected, x2);
  while (b - a > 1e-7) {
    if (f1 < f2) {
      a = x1; x1 = x2; f1 = f2;
      x2 = a + g * (b - a);
      f2 = ExpectedLog(d, expected, x2);
    } else {
      b = x2; x2 = x1; f2 = f1;
      x1 = b - g * (b - a);
      f1 = ExpectedLog(d, expected, x1);
    }
  }
  const double r = 0.5 * (a + b);
  // The ends are candidates too: a tight interval sits at 0.
  return ExpectedLog(d, expected, 0) >= ExpectedLog(d, expected, r) ? 0.0 : r;
}

}  // namespace gae
