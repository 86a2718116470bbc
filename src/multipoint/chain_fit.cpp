#include "multipoint/chain_fit.h"

#include <algorithm>
#include <cmath>

namespace gae {

namespace {
constexpr double kMinError = 1e-5;
constexpr double kMaxError = 0.25;
}  // namespace

ChainVectors ChainState::Vectors() {
  return {alpha.data(), alpha_log.data(), beta.data(), beta_log.data(), static_cast<std::ptrdiff_t>(order.size())};
}

RunBoundary ChainState::LeftOf(int p, int s) const {
  if (p < 0) return {};
  return {alpha.data() + static_cast<std::ptrdiff_t>(p) * s, alpha_log.data() + p,
          static_cast<std::ptrdiff_t>(order.size()), order[p]};
}

RunBoundary ChainState::RightOf(int p, int s) const {
  if (p >= static_cast<int>(order.size())) return {};
  return {beta.data() + static_cast<std::ptrdiff_t>(p) * s, beta_log.data() + p,
          static_cast<std::ptrdiff_t>(order.size()), order[p]};
}

double EvaluateChain(const GroupCalls& calls, ChainState& st, RunSums* sums) {
  const int s = calls.design.num_states;
  const std::size_t m = st.order.size();
  const std::size_t cells = m * static_cast<std::size_t>(calls.num_individuals);
  st.emissions = MakeEmissions(calls, st.error_rate);
  st.transitions.assign(m > 0 ? (m - 1) * kMatrixSize : 0, 0.0);
  for (std::size_t k = 0; k + 1 < m; ++k) TransitionMatrix(calls.design, st.rf[k], &st.transitions[k * kMatrixSize]);
  st.alpha.resize(cells * s);
  st.beta.resize(cells * s);
  st.alpha_log.resize(cells);
  st.beta_log.resize(cells);
  RunInput in{&calls, &st.emissions, st.order.data(), static_cast<int>(m), st.transitions.data(), {}, {}};
  st.log_likelihood = RunForwardBackward(in, st.Vectors(), sums);
  return st.log_likelihood;
}

void MaximiseChain(const GroupCalls& calls, const RunSums& sums, const FitSettings& settings,
                   std::vector<double>& rf, double& error_rate) {
  for (std::size_t k = 0; k < rf.size(); ++k)
    rf[k] = MaximiseInterval(calls.design, &sums.expected[k * kMatrixSize], settings.max_rf);
  if (settings.fixed_error) {
    error_rate = *settings.fixed_error;
  } else if (sums.typed > 0) {
    error_rate = std::clamp(sums.errors / sums.typed, kMinError, kMaxError);
  }
}

int FitChain(const GroupCalls& calls, ChainState& st, const FitSettings& settings) {
  if (settings.fixed_error) st.error_rate = *settings.fixed_error;
  RunSums sums;
  double current = EvaluateChain(calls, st, &sums);
  int iterations = 0;
  ChainState next;  // the two states swap, so their buffers are allocated once
  RunSums next_sums;
  while (iterations < settings.max_iterations) {
    ++iterations;
    next.order = st.order;
    next.rf = st.rf;
    next.error_rate = st.error_rate;
    MaximiseChain(calls, sums, settings, next.rf, next.error_rate);
    const double value = EvaluateChain(calls, next, &next_sums);
    // EM cannot lose; a loss here is rounding (or a clamped rate), and the old point stands.
    if (!(value >= current)) break;
    const double gain = value - current;
    std::swap(st, next);
    std::swap(sums, next_sums);
    current = value;
    if (gain < settings.tolerance * std::max(1.0, std::fabs(current))) break;
  }
  return iterations;
}

std::vector<double> Posteriors(const GroupCalls& calls, const ChainState& st) {
  const int s = calls.design.num_states;
  std::vector<double> out(st.alpha.size());
  for (std::size_t c = 0; c < st.alpha_log.size(); ++c) {
    double z = 0;
    for (int u = 0; u < s; ++u) z += st.alpha[c * s + u] * st.beta[c * s + u];
    for (int u = 0; u < s; ++u) out[c * s + u] = st.alpha[c * s + u] * st.beta[c * s + u] / z;
  }
  return out;
}

}  // namespace gae
