#include "twopoint/exact_search.h"

#include <cstdlib>

namespace gae {

double ExactGridPoint(int j) {
  const double x = static_cast<double>(j) / kExactGridSteps;
  return 0.5 * x * x;
}

float ExactGridMargin(double individuals) {
  return static_cast<float>(0.5 + individuals / (kExactGridSteps * kExactGridSteps));
}

int ExactGridCandidates(const ExactGrid& grid, float overall_best, float margin, int out[2]) {
  int best = 0;
  for (int j = 1; j < kExactGridPoints; ++j)
    if (grid[j] > grid[best]) best = j;
  if (grid[best] < overall_best - margin) return 0;
  out[0] = best;
  int second = -1;
  for (int j = 0; j < kExactGridPoints; ++j) {
    if (std::abs(j - best) < 2) continue;
    const bool above_left = j == 0 || grid[j] > grid[j - 1];
    const bool above_right = j == kExactGridSteps || grid[j] > grid[j + 1];
    if (above_left && above_right && (second < 0 || grid[j] > grid[second])) second = j;
  }
  if (second < 0 || grid[second] < overall_best - margin) return 1;
  out[1] = second;
  return 2;
}

}  // namespace gae
