#include "multipoint/gap_score.h"

#include <algorithm>
#include <cmath>

namespace gae {

double GapScore(const GroupCalls& calls, const ChainState& st, int32_t marker, int q) {
  const int s = calls.design.num_states;
  const int m = static_cast<int>(st.order.size());
  const int32_t n = calls.num_individuals;
  double t[kMatrixSize];
  // Past either end the copy stands a modest distance off the last marker.
  constexpr double kEndGap = 0.2;
  const double r = q >= 0 && q + 1 < m ? st.rf[q] : kEndGap;
  TransitionMatrix(calls.design, 0.5 * (1.0 - std::sqrt(std::max(0.0, 1.0 - 2.0 * r))), t);
  const EmissionTable& ex = st.emissions[marker];
  double total = 0;
  for (int32_t i = 0; i < n; ++i) {
    const double* e = &ex[calls.codes[static_cast<std::size_t>(marker) * n + i] * kMaxChainStates];
    double left[kMaxChainStates], mid[kMaxChainStates];
    double base = 0;
    if (q >= 0) {
      const double* a = &st.alpha[(static_cast<std::size_t>(i) * m + q) * s];
      base += st.alpha_log[static_cast<std::size_t>(i) * m + q];
      for (int u = 0; u < s; ++u) {
        double x = 0;
        for (int v = 0; v < s; ++v) x += a[v] * t[v * kMaxChainStates + u];
        left[u] = x;
      }
    } else {
      for (int u = 0; u < s; ++u) left[u] = calls.design.initial[u];
    }
    for (int u = 0; u < s; ++u) mid[u] = left[u] * e[u];
    double z = 0;
    if (q + 1 < m) {
      const std::size_t at = static_cast<std::size_t>(i) * m + q + 1;
      const double* b = &st.beta[at * s];
      const int32_t next = st.order[q + 1];
      const double* en = &st.emissions[next][calls.codes[static_cast<std::size_t>(next) * n + i] * kMaxChainStates];
      base += st.beta_log[at];
      for (int u = 0; u < s; ++u) {
        double x = 0;
        for (int v = 0; v < s; ++v) x += t[u * kMaxChainStates + v] * en[v] * b[v];
        z += mid[u] * x;
      }
    } else {
      for (int u = 0; u < s; ++u) z += mid[u];
    }
    total += base + std::log(z);
  }
  return total;
}

}  // namespace gae
