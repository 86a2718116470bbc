// Forward-backward over a run of markers, in scaled form: each individual's forward and
// backward vectors are kept normalised to sum 1 with the logarithm of their scale beside them,
// so that chromosomes of thousands of markers never underflow.
//
// The run may be the whole chromosome or a window inside it. A window takes the forward vectors
// of the marker just before it and the backward vectors of the marker just after it from a pass
// over the whole chromosome, so a changed order or changed frequencies inside the window are
// scored without touching the rest: the likelihood that comes out is that of the whole
// chromosome.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "multipoint/group_calls.h"

namespace gae {

inline constexpr int kMatrixSize = kMaxChainStates * kMaxChainStates;

// Per individual i and run position j: a vector of S values at data[(i * stride + j) * S] and its
// log scale at log[i * stride + j].
struct ChainVectors {
  double* alpha = nullptr;
  double* alpha_log = nullptr;
  double* beta = nullptr;
  double* beta_log = nullptr;
  std::ptrdiff_t stride = 0;
};

// Cached vectors of a marker next to a window: forward vectors for the left neighbour,
// backward vectors for the right one. `data` points at individual 0 of that marker.
struct RunBoundary {
  const double* data = nullptr;  // null: the chromosome ends here
  const double* log = nullptr;
  std::ptrdiff_t stride = 0;
  int32_t marker = -1;
};

struct RunInput {
  const GroupCalls* calls = nullptr;
  const std::vector<EmissionTable>* emissions = nullptr;
  const int32_t* markers = nullptr;  // the run, in order
  int count = 0;
  // One kMatrixSize block per interval, in order: into the first marker from the left boundary
  // (if any), between the run's markers, out to the right boundary (if any).
  const double* transitions = nullptr;
  RunBoundary left, right;
  // Whether the log scales of each position are written; a score that only needs the
  // likelihood (and EM sums) skips them.
  bool keep_logs = true;
  // Whether backward vectors are wanted; a run that only feeds forward vectors on skips them.
  bool backward = true;
};

// What EM needs from a pass: expected transition counts per interval (kMatrixSize blocks, in
// the order of RunInput::transitions) and expected erroneous calls among the typed ones.
struct RunSums {
  std::vector<double> expected;
  double errors = 0;
  double typed = 0;
};

int RunIntervals(const RunInput& in);

// Fills `out` (count positions per individual) and returns the natural log-likelihood of all
// individuals. `sums`, if given, is reset and filled.
double RunForwardBackward(const RunInput& in, const ChainVectors& out, RunSums* sums);

}  // namespace gae
