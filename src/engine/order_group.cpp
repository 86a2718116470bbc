#include "engine/order_group.h"

#include <numeric>

#include "engine/tour_matrix.h"

namespace gae {

void ComputePositions(const PairTable& table, int32_t n, const int32_t* order, float* position) {
  if (n < 1) return;
  position[0] = 0.0f;
  for (int32_t i = 1; i < n; ++i) position[i] = position[i - 1] + table.Distance(order[i - 1], order[i]);
}

void ApplyPermutation(const std::vector<int32_t>& perm, int32_t* order) {
  const std::vector<int32_t> old(order, order + perm.size());
  for (std::size_t i = 0; i < perm.size(); ++i) order[i] = old[static_cast<std::size_t>(perm[i] - 1)];
}

namespace {

// Method 4 with anchored markers: the anchored ones, by marker number, to the front and the
// others behind them in their present order. The sort that follows undoes the split, so the
// result is the same; it is kept for the matrix that is read in between.
void AnchoredFirst(int32_t n, const int32_t* group_anchor, int32_t* group_order) {
  std::vector<int32_t> anchored, others;
  for (int32_t i = 0; i < n; ++i) (group_anchor[i] >= 1 ? anchored : others).push_back(group_order[i]);
  std::vector<int32_t> perm;
  OrderByInput(static_cast<int32_t>(anchored.size()), anchored.data(), perm);
  ApplyPermutation(perm, anchored.data());
  std::copy(anchored.begin(), anchored.end(), group_order);
  std::copy(others.begin(), others.end(), group_order + anchored.size());
}

}  // namespace

void OrderGroup(const PairTable& table, const OrderingOptions& options, int32_t n,
                const int32_t* group_anchor, int32_t* group_order, float* group_position,
                UniformStream& random, const StartSink& sink) {
  int32_t frame = 0;
  for (int32_t i = 0; i < n; ++i)
    if (group_anchor[i] >= 1) ++frame;
  if (options.method == 4 && frame > 0) AnchoredFirst(n, group_anchor, group_order);

  std::vector<int32_t> perm(static_cast<std::size_t>(n));
  std::iota(perm.begin(), perm.end(), 1);
  if (options.method == 4) {
    // Input order needs no pair value.
    OrderByInput(n, group_order, perm);
  } else {
    const TourMatrix d = ReadGroupMatrix(table, options.by_what, n, group_order);
    if (options.method == 1) {
      OrderByNearestNeighbour(d, perm);
    } else if (options.method == 2) {
      if (options.option == 1) OrderMultiStart(d, options.starts, options.search, random, perm, sink);
      else if (options.option == 2) OrderImproveCurrent(d, options.search, perm, sink);
      else if (options.option == 3) OrderBestNearestNeighbour(d, options.search, perm, sink);
    } else if (options.method == 3) {
      for (int32_t i = frame; i < n; ++i) perm[static_cast<std::size_t>(i)] = 0;
      OrderByInsertion(d, random, perm, sink);
    }
  }
  ApplyPermutation(perm, group_order);
  ComputePositions(table, n, group_order, group_position);
}

void OrderConsensus(const PairTable& table, int method, int32_t n, const int32_t* group_anchor,
                    int32_t* group_order, float* group_position, UniformStream& random,
                    const StartSink& sink) {
  if (n == 2) {
    ComputePositions(table, n, group_order, group_position);
    return;
  }
  std::vector<int32_t> perm(static_cast<std::size_t>(n));
  std::iota(perm.begin(), perm.end(), 1);
  const TourMatrix d = ReadGroupMatrix(table, kByDistance, n, group_order);
  std::vector<int32_t> shared;  // positions (local numbers) of the markers on two maps or more
  for (int32_t i = 0; i < n; ++i)
    if (group_anchor[i] >= 2) shared.push_back(i + 1);
  const int32_t k = static_cast<int32_t>(shared.size());

  if (method == 1 || k < 3) {
    OrderMultiStart(d, kConsensusStarts, kConsensusSearch, random, perm, sink);
    ApplyPermutation(perm, group_order);
    ComputePositions(table, n, group_order, group_position);
    return;
  }
  // The shared markers make the frame, ordered among themselves; the others are inserted.
  std::vector<int32_t> frame_perm(static_cast<std::size_t>(k));
  std::iota(frame_perm.begin(), frame_perm.end(), 1);
  OrderMultiStart(d.Select(shared), kConsensusStarts, kConsensusSearch, random, frame_perm, sink);
  std::vector<int32_t> list;
  list.reserve(static_cast<std::size_t>(n));
  for (const int32_t f : frame_perm) list.push_back(shared[static_cast<std::size_t>(f - 1)]);
  std::vector<bool> in_frame(static_cast<std::size_t>(n) + 1, false);
  for (const int32_t s : shared) in_frame[static_cast<std::size_t>(s)] = true;
  for (int32_t i = 1; i <= n; ++i)
    if (!in_frame[static_cast<std::size_t>(i)]) list.push_back(i);
  for (int32_t i = 0; i < n; ++i) perm[static_cast<std::size_t>(i)] = i < k ? i + 1 : 0;
  OrderByInsertion(d.Select(list), random, perm, sink);
  for (int32_t i = 0; i < n; ++i) perm[static_cast<std::size_t>(i)] = list[static_cast<std::size_t>(perm[static_cast<std::size_t>(i)] - 1)];
  ApplyPermutation(perm, group_order);
  ComputePositions(table, n, group_order, group_position);
}

}  // namespace gae
