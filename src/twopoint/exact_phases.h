// The exact estimate of a bi-parental pair from its two phases (the table as it stands and with
// one marker's alleles exchanged), whatever computes each phase's likelihood: the classes one by
// one, or their counts pooled by chance. A phase gives its grid of log-likelihoods, its score and
// curvature, its log-likelihood at r and at 1/2.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "twopoint/exact_search.h"
#include "twopoint/exact_two_point.h"

namespace gae {

struct PhaseMaximum {
  double r = 0.5;
  double log_lik = -std::numeric_limits<double>::infinity();
};

inline float GridMax(const ExactGrid& grid) {
  float best = grid[0];
  for (float v : grid) best = std::max(best, v);
  return best;
}

// Refines the grid's candidates of one phase, keeping the best maximum found so far.
template <class Phase>
void RefinePhase(const Phase& phase, const ExactGrid& grid, float overall_best, float margin, PhaseMaximum& best) {
  const auto derivatives = [&](double r, double& g, double& h) { phase.Derivatives(r, g, h); };
  int candidates[2];
  const int count = ExactGridCandidates(grid, overall_best, margin, candidates);
  for (int c = 0; c < count; ++c) {
    PhaseMaximum m;
    m.r = RefineGridPoint(derivatives, candidates[c]);
    m.log_lik = phase.LogLik(m.r);
    if (m.log_lik > best.log_lik) best = m;
  }
}

// `n`: the individuals of the table. When the exchanged phase holds the higher maximum r' the
// frequency is 1 - r', as the pair store keeps it.
template <class Phase>
ExactTwoPoint ExactOfPhases(const Phase& as_read, const Phase& exchanged_phase, float n) {
  ExactTwoPoint out;
  const ExactGrid grid1 = as_read.Grid();
  const ExactGrid grid2 = exchanged_phase.Grid();
  const float overall = std::max(GridMax(grid1), GridMax(grid2));
  PhaseMaximum as_given, exchanged;
  const float margin = ExactGridMargin(n);
  RefinePhase(as_read, grid1, overall, margin, as_given);
  RefinePhase(exchanged_phase, grid2, overall, margin, exchanged);
  const bool take_exchanged = exchanged.log_lik > as_given.log_lik;
  const PhaseMaximum& best = take_exchanged ? exchanged : as_given;
  // Free recombination is tested with the phase as free as under linkage: where the two
  // readings of the alleles segregate differently (backcrosses), the better one at 1/2 is the
  // baseline, so that the LOD measures linkage and not the segregation of one marker.
  const double at_half = std::max(as_read.HalfLogLik(), exchanged_phase.HalfLogLik());
  const double gain = best.log_lik - at_half;
  if (!(gain > 1e-9 * (1.0 + std::fabs(at_half)))) return out;  // nothing beats 1/2
  out.rec_freq = static_cast<float>(take_exchanged ? 1.0 - best.r : best.r);
  out.lod = static_cast<float>(gain / std::log(10.0));
  return out;
}

}  // namespace gae
