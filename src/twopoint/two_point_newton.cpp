// The guarded Newton iteration on ln L and its start values.
#include <cmath>

#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// Mean of two start candidates, leaving out one that is NaN (a root of a negative number).
float MeanOfCandidates(float a, float b) {
  if (std::isnan(a) && std::isnan(b)) return 0.00001f;
  if (std::isnan(a)) return b;
  if (std::isnan(b)) return a;
  return (a + b) / 2;
}

// Start values for the dominant and recessive pairs, from the share of the class that moves
// most with r. Type 14 takes type 13's formulas as they are, unmirrored. These values belong
// to the estimator's definition: a start far from the maximum (F3 codes 1212 and 1010 below
// r of about 0.2, types 13 and 14 with code 1210, always at 0.9999) can lead the guarded
// iteration to stop at the border instead, and results at small r depend on them.
float DominantStart(int population_type, int code, const float* N, float n) {
  switch (population_type) {
    case 8:
      if (code == 1212) return 1 - 4 * N[8] / n;
      if (code == 1210) return 4 * N[6] / n;
      if (code == 1010)
        return MeanOfCandidates(1 - std::sqrt(4 * (1 - (N[1] + N[3] + N[4]) / n)),
                                1 - std::sqrt(4 * N[0] / n));
      return 0.0f;
    case 13:
    case 14:
      if (code == 1212) return 1 - std::cbrt(4 * (N[4] + N[8]) / n - 3);
      if (code == 1210) return 8 * ((N[4] - N[6]) / n - 0.125f);
      if (code == 1010) return 1 - std::cbrt(4 * (N[0] + N[4]) / n - 3);
      return 0.0f;
    case 15:
      if (code == 1212) return 2 * std::pow(N[8] / n, 0.25f);
      if (code == 1210) return N[6] / n;
      if (code == 1010)
        return MeanOfCandidates(1 - std::sqrt(std::sqrt(8 * (N[0] + N[4]) / n - 4) - 1),
                                1 - std::sqrt(std::sqrt(8 * (0.5f - (N[1] + N[3]) / n)) - 1));
      return 0.0f;
    case 16:
      if (code == 1212) return 1 - N[8] / n;
      if (code == 1210) return N[6] / n;
      if (code == 1010)
        return MeanOfCandidates(1 - 2 * std::pow(1 - (N[1] + N[3] + N[4]) / n, 0.25f),
                                2 * std::pow(1 - N[0] / n, 0.25f));
      return 0.0f;
    default:
      return 0.0f;
  }
}

// Where an iteration that has left 0.0001 .. 0.9999 ends: 0 and 1 absorb.
float Absorbed(float q) {
  if (q > 0.9999f) return 1.0f;
  if (q < 0.0001f) return 0.0f;
  return q;
}

}  // namespace

float TwoPointStart(int population_type, int pair_code, const float cells[9], float n) {
  const float* N = cells;
  const int code = CanonicalPairCode(pair_code);
  float start = 0.0f;
  if (code == 11) {
    start = (N[2] + N[6] + 0.5f * (N[1] + N[3] + N[5] + N[7])) / (n - N[4]);
  } else if (code == 112) {
    start = (N[2] + 0.5f * N[5]) / (n - N[1] - N[4] - N[7]);
  } else if (code == 110) {
    start = (0.5f * N[3] + N[6]) / (n - N[1] - N[4] - N[7]);
  } else {
    start = DominantStart(population_type, code, N, n);
  }
  // Keep the start inside the open interval; NaN passes both tests.
  if (start <= 0.0f) return 0.0001f;
  if (start >= 1.0f) return 0.9999f;
  return start;
}

float TwoPointNewton(int population_type, int pair_code, const float cells[9], float n) {
  float r = TwoPointStart(population_type, pair_code, cells, n);
  for (int round = 1;; ++round) {
    float g = 0.0f, h = 0.0f;
    TwoPointModel<float>(population_type, pair_code, cells, r, nullptr, &g, &h);
    const float q = r - g / h;
    if (round > 100 || std::fabs(q - r) < 0.0001f) return Absorbed(q);
    if (h > 0.0f) {
      // Not at a maximum: ln L is convex here, so move halfway towards the nearer end.
      if (r > 0.9999f) return 1.0f;
      if (r < 0.0001f) return 0.0f;
      r = r > 0.5f ? 0.5f * (r + 1) : 0.5f * r;
    } else if (q > 0.9999f) {
      if (round > 1) return 1.0f;
      r = 0.5f * (r + 1);
    } else if (q < 0.0001f) {
      if (round > 1) return 0.0f;
      r = 0.5f * r;
    } else {
      r = q;
    }
  }
}

}  // namespace gae
