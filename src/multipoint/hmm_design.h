// The hidden Markov chain of one bi-parental population along a chromosome: the true genotype
// of an individual at each marker is the hidden state, and the chance of moving from one state
// to the next over an interval of recombination frequency r is the chain's transition.
//
// Backcrosses, doubled haploids and F2 plants are followed meiosis by meiosis, which makes the
// chain exact: two states for one meiosis, four phase-known states (the allele from each
// parent) for the F2. Recombinant inbred lines follow one meiosis with the selfing expansion
// R = 2r / (1 + 2r) in its place. The other designs (backcross-derived lines, F3, BCnFm) keep
// their observable classes as states and take the transition as the two-locus genotype
// distribution divided by the one-locus distribution, so any pair of loci in the chain shows
// exactly the design's two-locus frequencies.
//
// Pure lines of four- and eight-way crosses keep the founder a line carries as the state
// (founder_design.h); their transitions come from the funnel's two-locus tables.
#pragma once

#include <array>
#include <cstdint>

namespace gae {

inline constexpr int kMaxChainStates = 8;

struct HmmDesign {
  int32_t population_type = 0;
  int num_states = 0;  // 0: a type the chain does not know
  int num_classes = 0;  // genotype classes a codominant marker shows (2 or 3)
  std::array<int8_t, kMaxChainStates> state_class{};  // 0 P1 type (A), 1 heterozygote (H), 2 P2 type (B)
  std::array<double, kMaxChainStates> initial{};
  // Chains counted in meioses: T(s, t) = q^k (1 - q)^(meioses - k), k = switches[s * S + t], q = r
  // or, in expanded chains, R.
  bool counted = false;
  bool expanded = false;
  int meioses = 0;
  std::array<int8_t, kMaxChainStates * kMaxChainStates> switches{};
  // Pure lines: the number of founders (4 or 8; 0 for the other designs) and whether the lines
  // were inbred by selfing rather than doubled.
  int founders = 0;
  bool inbred = false;
};

HmmDesign MakeHmmDesign(int32_t population_type);

// Transition matrix of an interval of frequency r, row s at s * kMaxChainStates.
void TransitionMatrix(const HmmDesign& design, double r, double* matrix);

// The frequency in [0, r_max] that maximises sum over (s, t) of expected(s, t) ln T(s, t) (same
// layout): the maximisation step of EM for one interval, given its expected transition counts.
double MaximiseInterval(const HmmDesign& design, const double* expected, double r_max);

}  // namespace gae
