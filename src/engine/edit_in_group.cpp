#include "engine/edit_in_group.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/edit_group_model.h"

namespace gae {

namespace {

// Length of an ordered group: from its first marker to its last.
float GroupLength(int32_t n, const float* position) { return position[n - 1] - position[0]; }

}  // namespace

bool SwapNeedsDistances(int32_t n, int32_t status) {
  return n > 2 && status != kGroupGrouped;
}

void SwapUp(int32_t k, int32_t n, int32_t status, int32_t* order, float* position,
            const PairTable* table) {
  if (k < 2 || k > n) return;
  const bool patch = SwapNeedsDistances(n, status);
  // No store to read the new neighbours from: leave the group as it is.
  if (patch && table == nullptr) return;
  std::swap(order[k - 2], order[k - 1]);
  if (!patch) return;

  // Positions become gaps (gap 1 is 0), walking down so each difference uses the old value.
  for (int32_t i = n; i >= 2; --i) position[i - 1] -= position[i - 2];
  position[0] = 0.0f;
  // Only the pairs that became neighbours get a new gap; gap k joins the same two markers.
  auto distance = [&](int32_t a, int32_t b) { return table->Distance(order[a - 1], order[b - 1]); };
  if (k == n) {
    position[k - 2] = distance(k - 2, k - 1);
  } else if (k == 2) {
    position[2] = distance(2, 3);
  } else {
    position[k - 2] = distance(k - 2, k - 1);
    position[k] = distance(k, k + 1);
  }
  for (int32_t i = 2; i <= n; ++i) position[i - 1] += position[i - 2];
}

void BestPlace(int32_t p, int32_t n, int32_t status, int32_t* order, float* position,
               const PairTable* table) {
  if (status == kGroupGrouped || p < 1 || p > n) return;
  if (SwapNeedsDistances(n, status) && table == nullptr) return;

  const std::vector<int32_t> start_order(order, order + n);
  const std::vector<float> start_position(position, position + n);
  std::vector<int32_t> best_order = start_order, work_order = start_order;
  std::vector<float> best_position = start_position, work_position = start_position;
  float best_length = GroupLength(n, position);
  auto consider = [&](int32_t k) {
    SwapUp(k, n, status, work_order.data(), work_position.data(), table);
    const float length = GroupLength(n, work_position.data());
    if (length < best_length) {
      best_length = length;
      best_order = work_order;
      best_position = work_position;
    }
  };
  for (int32_t k = p; k >= 2; --k) consider(k);  // the marker walks up
  work_order = start_order;
  work_position = start_position;
  for (int32_t k = p + 1; k <= n; ++k) consider(k);  // and then down
  std::copy(best_order.begin(), best_order.end(), order);
  std::copy(best_position.begin(), best_position.end(), position);
}

void MoveInsideGroup(int32_t p, int32_t place_mode, int32_t n, int32_t status, int32_t* order,
                     float* position, const PairTable* table) {
  if (p < 1 || p > n) return;
  switch (place_mode) {
    case 1:
      SwapUp(p, n, status, order, position, table);
      break;
    case 2:
      SwapUp(p + 1, n, status, order, position, table);
      break;
    case 3:
      for (int32_t k = p + 1; k <= n; ++k) SwapUp(k, n, status, order, position, table);
      break;
    case 4:
      BestPlace(p, n, status, order, position, table);
      break;
    default:
      break;
  }
}

}  // namespace gae
