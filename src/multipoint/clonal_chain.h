// The hidden Markov chain of a clonal F1 or double cross along a chromosome. Each progeny
// carries one gamete of each outbred parent, so its hidden state at a locus is which of the
// first parent's two homologues it received and which of the second's (4 states). The parents'
// meioses are separate: an interval has one recombination frequency per parent, and the chain's
// transition is the product of the two parents' own switches.
//
// A marker's alleles sit on the homologues by its phases, one per parent: phase 0 puts the
// allele the category names first (A of the first parent, C of the second) on homologue 0.
// Phases are unknown and are chosen by the likelihood of the whole chromosome, so a marker that
// cannot tell the parents apart on its own (AB=CD) takes its phase from its neighbours.
//
// The reader's letters: A AC, B AD, C BC, D BD, E XC, F XD, G AX, H BX, I AA, J AB, K BB, X
// missing. Categories: 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or A=CB=D, 5 A=DB=C.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace gae {

inline constexpr int kClonalStates = 4;  // first parent's homologue * 2 + second's
inline constexpr uint8_t kClonalMissing = 11;

struct ClonalCalls {
  int32_t num_markers = 0;
  int32_t num_individuals = 0;
  std::vector<uint8_t> codes;       // marker-major; 0..10 for the letters A..K, kClonalMissing
  std::vector<int32_t> categories;  // 1..5
};

// Null-free: letters a category cannot show count as missing.
ClonalCalls MakeClonalCalls(int32_t num_individuals, const std::vector<char>& types,
                            const std::vector<int32_t>& categories);

// Whether a marker of `category` segregates in the first (parent 0) or second parent.
bool SegregatesIn(int32_t category, int parent);

struct Phase {
  uint8_t first = 0, second = 0;
};

// Chance of each call code in each state, [code * 4 + state], under error rate e: a call of the
// state's class has 1 - e, the rest spreads evenly over the other classes of the category.
using ClonalEmission = std::array<double, 12 * kClonalStates>;
ClonalEmission MakeClonalEmission(int32_t category, Phase phase, double error_rate);

// The phases a marker of `category` can take that change its emissions.
std::vector<Phase> PhaseChoices(int32_t category);

// A run of markers, perhaps with fixed forward vectors before it and backward vectors after
// it taken from a pass over the whole chromosome (then the likelihood is the chromosome's).
struct ClonalRun {
  std::vector<int32_t> markers;
  std::vector<Phase> phases;   // per run position; rewritten when phases are chosen
  // Interval frequencies per parent, count + 1 entries: [0] from the left boundary into the
  // first marker, [k] between run positions k - 1 and k, [count] out to the right boundary.
  std::vector<double> rf_first, rf_second;
  double error_rate = 0.01;
  // Boundary vectors per individual (4 values, summing to 1) and the log of their scale: on the
  // left the forward vectors of the marker before the run, on the right the backward vectors of
  // the marker after it times the chance of that marker's calls.
  const double* left = nullptr;
  const double* left_log = nullptr;
  const double* right = nullptr;
  const double* right_log = nullptr;
  // Phases chosen from the markers before each one only (a start when all phases are unknown);
  // the pass's likelihood and sums then mean nothing.
  bool past_only = false;
};

// What a pass leaves: per individual and run position the normalised forward and backward
// vectors with their cumulative log scales ([i * count + k]), the expected recombinations of
// each parent per interval (count + 1 entries), and expected wrong calls among the typed ones.
struct ClonalPass {
  std::vector<double> alpha, alpha_log, beta, beta_log;
  std::vector<double> recombinations_first, recombinations_second;
  double errors = 0, typed = 0;
  double log_likelihood = 0;  // natural log
};

// One pass. With `choose_phases`, each marker in turn takes the phase under which the whole
// chromosome is likeliest, the markers before it at their new phases (never a lower
// likelihood). `keep_vectors` keeps alpha and beta in `out` for later windows.
double RunClonal(const ClonalCalls& calls, ClonalRun& run, bool choose_phases, bool keep_vectors, ClonalPass& out);

}  // namespace gae
