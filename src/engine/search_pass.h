// What one pass of a local search sees: the cycle read from local number 1, with the length of
// each edge and, for the open-path searches, which of the longest edges each one is. Visiting
// the tour by position is the same walk as following the successor list from city 1.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"
#include "engine/tour_primitives.h"

namespace gae {

struct PassView {
  int32_t m = 0;
  std::vector<int32_t> city;  // city[p] for p = 0..m, city[m] == city[0]
  std::vector<float> edge;    // edge[p] = d(city[p], city[p+1])
  // For the open-path searches: the four longest edges, and for each position 1, 2 or 3 when
  // its edge is the first, second or third longest (by pair index), else 0.
  float longest[4] = {0, 0, 0, 0};
  std::vector<int8_t> rank;
};

PassView ViewPass(const TourMatrix& d, const Successors& next, bool open_path);

// The longest edge of the old cycle that a move keeps when it removes the edges at positions
// whose ranks are given (two or three of them).
inline float SurvivorOfTwo(const PassView& v, int8_t r1, int8_t r2) {
  if (r1 != 1 && r2 != 1) return v.longest[0];
  if (r1 != 2 && r2 != 2) return v.longest[1];
  return v.longest[2];
}
inline float SurvivorOfThree(const PassView& v, int8_t r1, int8_t r2, int8_t r3) {
  if (r1 != 1 && r2 != 1 && r3 != 1) return v.longest[0];
  if (r1 != 2 && r2 != 2 && r3 != 2) return v.longest[1];
  if (r1 != 3 && r2 != 3 && r3 != 3) return v.longest[2];
  return v.longest[3];
}
// The larger of two values, the first kept unless the second is strictly greater.
inline float Larger(float a, float b) { return b > a ? b : a; }

}  // namespace gae
