// The ways to order one group, on its matrix of local numbers 1..n. Each leaves its result in
// `perm` (n entries): position i of the new order takes the marker at old position perm[i-1].
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/tour_matrix.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

// What one start of a tour search achieved, for the run log.
struct StartRecord {
  int32_t n = 0;
  int32_t counter = 0;        // running number of the start (n when there is a single start)
  float closed_before = 0.0f;  // cycle length before the local search
  float closed_after = 0.0f;   // open length plus closing edge after it
  float open_before = 0.0f;    // cycle less its longest edge (or the open length) before
  float open_after = 0.0f;
};
using StartSink = std::function<void(const StartRecord&)>;
// Two integers and four reals (two decimals), each in 12 columns.
std::string StartLine(const StartRecord& record);

// Nearest-neighbour tours from every start, judged by the pair-weighted sum; the lowest start
// wins ties.
void OrderByNearestNeighbour(const TourMatrix& d, std::vector<int32_t>& perm);
// Local search from `starts` random nearest-neighbour tours (at most n), the shortest open path
// kept; the earliest start wins ties. The random stream is re-seeded from the clock for the
// draw (GAENGINE_SEED fixes it) and its seed put back afterwards.
void OrderMultiStart(const TourMatrix& d, int32_t starts, int32_t search, UniformStream& random,
                     std::vector<int32_t>& perm, const StartSink& sink);
// Local search from the present order (perm is the identity on entry).
void OrderImproveCurrent(const TourMatrix& d, int32_t search, std::vector<int32_t>& perm,
                         const StartSink& sink);
// Local search once, from the nearest-neighbour tour whose cycle less its longest edge is
// shortest.
void OrderBestNearestNeighbour(const TourMatrix& d, int32_t search, std::vector<int32_t>& perm,
                               const StartSink& sink);
// Insertion around a frame: perm holds 1..K and then zeros, the first K positions being the
// frame. The marker nearest to the frame goes next, into the gap that lengthens the path
// least. A frame of fewer than three runs the multi-start search (5 starts, open-path 2-opt).
void OrderByInsertion(const TourMatrix& d, UniformStream& random, std::vector<int32_t>& perm,
                      const StartSink& sink);
// Ascending marker number: perm sorts order[0..n-1].
void OrderByInput(int32_t n, const int32_t* order, std::vector<int32_t>& perm);

}  // namespace gae
