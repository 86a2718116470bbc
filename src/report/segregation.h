// The segregation test of one marker: do its genotype classes follow the ratios that the
// population type expects (1:2:1 in an F2, 1:1 in a backcross, ...)? A marker far from them
// suggests scoring problems or selection, and the map reports print the test beside it.
#pragma once

#include <cstdint>

#include "vocabulary/population.h"

namespace gae {

// Genotype counts after folding the partial scores the population cannot tell apart:
// n2 counts A and D, n1 H, n0 B and R, nx X.
struct SegregationCounts {
  int32_t n2 = 0, n1 = 0, n0 = 0, nx = 0;
};
SegregationCounts CountSegregation(int population_type, const char* types, int64_t num_individuals);

struct SegregationTest {
  SegregationCounts counts;
  bool tested = false;     // false for a marker class the population type cannot test
  float chi_square = 0;    // NaN when a tested class has an expected count of 0
  float probability = 0;   // Pr>ChiSq; 0.0 when the chi-square is not a number
};

// `marker_class`: 1 co-dominant, 12 dominant, 10 recessive.
SegregationTest SegregationChiSquare(int population_type, int marker_class, const char* types,
                                     int64_t num_individuals);

}  // namespace gae
