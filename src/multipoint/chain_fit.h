// A whole chromosome in a given order: its forward and backward vectors at given interval
// frequencies and error rate, and the EM estimates of both.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "multipoint/chain_kernel.h"

namespace gae {

// The state of one pass over the whole order, kept so that moves can be scored from it.
struct ChainState {
  std::vector<int32_t> order;
  std::vector<double> rf;           // one per adjacent interval
  double error_rate = 0;
  std::vector<EmissionTable> emissions;
  std::vector<double> transitions;  // kMatrixSize per interval
  std::vector<double> alpha, alpha_log, beta, beta_log;  // [individual][position]
  double log_likelihood = 0;        // natural log

  ChainVectors Vectors();
  // Forward vectors of the marker at `position` as a window boundary, backward likewise.
  RunBoundary LeftOf(int position, int num_states) const;
  RunBoundary RightOf(int position, int num_states) const;
};

// Sets order, frequencies and error rate, then runs the pass; returns the log-likelihood.
double EvaluateChain(const GroupCalls& calls, ChainState& state, RunSums* sums);

struct FitSettings {
  std::optional<double> fixed_error;
  int max_iterations = 200;
  double tolerance = 1e-6;  // stop when an iteration gains less than this share of |ln L|
  double max_rf = 0.499;
};

// EM from the frequencies and error rate in `state` (its order fixed). Never lowers the
// likelihood; leaves `state` evaluated at the returned estimates. Returns the iterations run.
int FitChain(const GroupCalls& calls, ChainState& state, const FitSettings& settings);

// Updates the interval frequencies (and the error rate unless fixed) from a pass's sums.
void MaximiseChain(const GroupCalls& calls, const RunSums& sums, const FitSettings& settings,
                   std::vector<double>& rf, double& error_rate);

// Posterior probability of each state of each individual at each position of the evaluated
// chain: [(i * M + p) * S + s].
std::vector<double> Posteriors(const GroupCalls& calls, const ChainState& state);

}  // namespace gae
