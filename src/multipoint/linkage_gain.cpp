#include "multipoint/linkage_gain.h"

#include <cmath>
#include <numbers>

#include "multipoint/window_moves.h"

namespace gae {

namespace {

double AloneLogLikelihood(const GroupCalls& calls, const ChainState& st, int32_t marker) {
  const HmmDesign& d = calls.design;
  const EmissionTable& e = st.emissions[marker];
  double total = 0;
  for (int32_t i = 0; i < calls.num_individuals; ++i) {
    const uint8_t code = calls.codes[static_cast<std::size_t>(marker) * calls.num_individuals + i];
    double p = 0;
    for (int s = 0; s < d.num_states; ++s) p += d.initial[s] * e[code * kMaxChainStates + s];
    total += std::log(p);
  }
  return total;
}

}  // namespace

std::vector<double> LinkageGains(const GroupCalls& calls, const ChainState& st, double max_rf) {
  const int m = static_cast<int>(st.order.size());
  std::vector<double> gains(m, 0.0);
  if (m < 2) return gains;
  std::vector<int> position_of(calls.num_markers, -1);
  for (int p = 0; p < m; ++p) position_of[st.order[p]] = p;
  WindowScratch scratch;
  for (int p = 0; p < m; ++p) {
    WindowMove without;
    if (p == 0 || p == m - 1) {
      // At an end the window keeps the one neighbour and drops the marker.
      without.first = p == 0 ? 0 : m - 2;
      without.last = without.first + 1;
      without.markers = {st.order[p == 0 ? 1 : m - 2]};
    } else {
      without.first = without.last = p;
    }
    ScoreWindow(calls, st, position_of, 3, max_rf, without, scratch);
    const double gain = st.log_likelihood - without.log_likelihood - AloneLogLikelihood(calls, st, st.order[p]);
    gains[p] = gain / std::numbers::ln10;
  }
  return gains;
}

}  // namespace gae
