// The multipoint map of one clonal F1 or double-cross linkage group: the phases of every
// marker in both parents, each parent's interval frequencies and the error rate by EM along an
// order, the order improved by moving markers where the whole chromosome is likelier, and the
// markers the chain gains nothing from left out of the group. Pure, like the bi-parental one.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "multipoint/clonal_chain.h"
#include "multipoint/group_map.h"

namespace gae {

// A fitted chromosome: order, phases per position, each parent's frequency per interval.
struct ClonalChain {
  std::vector<int32_t> order;
  std::vector<Phase> phases;
  std::vector<double> rf_first, rf_second;  // order.size() - 1 each
  double error_rate = 0.01;
  ClonalPass pass;  // of the whole order, vectors kept
  double log_likelihood = 0;
};

struct ClonalFitSettings {
  std::optional<double> fixed_error;
  int max_iterations = 200;
  double tolerance = 1e-6;  // EM stops when an iteration gains less than this share of |ln L|
  double max_rf = 0.499;
};

// Phases first from each marker's predecessors alone, then EM with the phases chosen again at
// every iteration; leaves `chain` evaluated. Returns the iterations run.
int FitClonalChain(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings,
                   bool fresh_phases);

// Sweeps of single-marker moves within `reach` places, each scored by the chromosome's
// likelihood with the intervals it touches fitted again; refits between sweeps. Returns moves.
int PolishClonalOrder(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings, int reach,
                      int max_sweeps);

// Blocks of markers between long intervals turned end to end or swapped with the next block
// (either turned), within `max_span` positions; the best move that raises the likelihood is
// taken and the chain refitted, until none does or `max_moves` are made. Returns moves.
int MoveClonalBlocks(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings, int max_span,
                     int max_moves);

// Markers with a long interval on each side (or at an end, on its one side) are put in the gap
// anywhere in the chromosome where they fit best, if the chromosome is likelier so. Returns moves.
int RelocateClonalStrays(const ClonalCalls& calls, ClonalChain& chain, const ClonalFitSettings& settings);

// Per position, log10 of how much likelier the chromosome is with the marker than without it.
std::vector<double> ClonalLinkageLods(const ClonalCalls& calls, const ClonalChain& chain);

struct ClonalGroupMap {
  MultipointGroupMap map;               // combined frequencies (the parents' mean) and distances
  std::vector<Phase> phases;            // per position of map.order
  std::vector<double> rf_first, rf_second;
  double first_length_cm = 0, second_length_cm = 0;
};

// `types`: the reader's letters A to K and X, marker-major; `categories` 1 to 5.
ClonalGroupMap MapClonalGroup(int32_t num_individuals, const std::vector<char>& types,
                              const std::vector<int32_t>& categories, const std::vector<int32_t>& start_order,
                              const MultipointOptions& options);

}  // namespace gae
