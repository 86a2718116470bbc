#include "report/segregation.h"

#include <cmath>

#include "vocabulary/chi_square.h"

namespace gae {

SegregationCounts CountSegregation(int population_type, const char* types, int64_t num_individuals) {
  // In a backcross to P1 a recessive score R ("not P1") can only be the heterozygote; in a
  // backcross to P2 a dominant score D ("not P2") likewise. Elsewhere D joins the P1 class and
  // R the P2 class.
  const bool to_p1 = BackcrossToP1(population_type);
  const bool to_p2 = BackcrossToP2(population_type);
  SegregationCounts n;
  for (int64_t i = 0; i < num_individuals; ++i) {
    char g = types[i];
    if (g == 'R' && !to_p2) g = to_p1 ? 'H' : 'B';
    else if (g == 'D' && !to_p1) g = to_p2 ? 'H' : 'A';
    switch (g) {
      case 'A': case 'D': ++n.n2; break;
      case 'H': ++n.n1; break;
      case 'B': case 'R': ++n.n0; break;
      case 'X': ++n.nx; break;
      default: break;
    }
  }
  return n;
}

namespace {

float Term(float observed, float expected) {
  const float d = observed - expected;
  return d * d / expected;
}

}  // namespace

SegregationTest SegregationChiSquare(int population_type, int marker_class, const char* types,
                                     int64_t num_individuals) {
  SegregationTest test;
  test.counts = CountSegregation(population_type, types, num_individuals);
  const float n2 = static_cast<float>(test.counts.n2);
  const float n1 = static_cast<float>(test.counts.n1);
  const float n0 = static_cast<float>(test.counts.n0);
  const ClassRatios p = ExpectedRatios(population_type);
  float chi = 0.0f;
  int df = 1;
  if (SelfedGeneration(population_type)) {
    const float n = n2 + n1 + n0;
    const float e2 = n * p.p2, e1 = n * p.p1, e0 = n * p.p0;
    if (marker_class == 1) {
      chi = Term(n2, e2) + Term(n1, e1) + Term(n0, e0);
      df = 2;
    } else if (marker_class == 12) {
      chi = Term(n2 + n1, e2 + e1) + Term(n0, e0);
    } else if (marker_class == 10) {
      chi = Term(n2, e2) + Term(n0 + n1, e1 + e0);
    } else {
      return test;  // a class this population cannot test: the caller's field keeps its value
    }
  } else if (BackcrossToP1(population_type)) {
    const float n = n2 + n1;
    chi = Term(n2, n * p.p2) + Term(n1, n * p.p1);
  } else if (BackcrossToP2(population_type)) {
    const float n = n1 + n0;
    chi = Term(n1, n * p.p1) + Term(n0, n * p.p0);
  } else if (population_type >= 1 && population_type <= 20) {
    const float n = n2 + n0;
    chi = Term(n2, n * p.p2) + Term(n0, n * p.p0);
  } else {
    return test;
  }
  test.tested = true;
  test.chi_square = chi;
  test.probability = std::isnan(chi) ? 0.0f : 1.0f - CHIDF(chi, static_cast<float>(df));
  return test;
}

}  // namespace gae
