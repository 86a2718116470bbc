#include "twopoint/closed_forms.h"

#include <cmath>

#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// The positive root x of n x^2 + b x - k = 0, where `disc` is the 4 n k of the discriminant,
// formed by the caller in the order of its own expression.
float PositiveRoot(float b, float disc, float n) {
  return (-b + std::sqrt(b * b + disc)) / (2 * n);
}

// Lines from a backcross (types 5, 6, 11, 12, 17 to 20): the root x of the likelihood
// equation in a power of 1 - r, from the counts of the recurrent parent's class (N1 for a
// backcross to P1, N9 to P2), the donor's class and the recombinant classes N3 and N7.
float LinesRoot(int backcrosses, bool to_p2, const float* N, float n) {
  const float recurrent = to_p2 ? N[8] : N[0];
  const float donor = to_p2 ? N[0] : N[8];
  if (backcrosses == 1) {
    const float b = 2 * N[2] + 2 * N[6] - recurrent + donor;
    return PositiveRoot(b, 8 * n * donor, n);
  }
  const float b = 6 * N[2] + 6 * N[6] - recurrent + 5 * donor;
  return PositiveRoot(b, 24 * n * donor, n);
}

// F2 with a dominant or recessive marker on both sides.
bool F2ClosedForm(int pair_code, const float* N, float n, float& r) {
  switch (CanonicalPairCode(pair_code)) {
    case 1212: {
      const float b = 2 * n - 3 * N[4] - N[8];
      r = 1 - std::sqrt(PositiveRoot(b, 8 * n * N[8], n));
      return true;
    }
    case 1010: {
      const float b = 2 * n - 3 * N[4] - N[0];
      r = 1 - std::sqrt(PositiveRoot(b, 8 * n * N[0], n));
      return true;
    }
    case 1210: {
      const float b = 2 * N[4] - N[3] - N[7] - n;
      const float s = (b + std::sqrt(b * b + 8 * N[6] * n)) / (2 * n);
      r = std::sqrt(s);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

bool TwoPointClosedForm(int population_type, int pair_code, const float cells[9], float n,
                        float& rec_freq) {
  const float* N = cells;  // N[0] is the first cell
  float& r = rec_freq;
  switch (population_type) {
    case 1: r = (N[1] + N[3]) / n; return true;
    case 2: r = (N[5] + N[7]) / n; return true;
    case 3: r = (N[2] + N[6]) / n; return true;
    case 4: {
      // Lines are recombinant with probability R = 2r / (1 + 2r).
      const float big_r = (N[2] + N[6]) / n;
      r = 0.5f * big_r / (1 - big_r);
      return true;
    }
    case 5:
    case 6: {
      // x = (1 - r) / (1 + 2r), four times the donor class's probability.
      const float x = LinesRoot(1, population_type == 6, N, n);
      r = (1 - x) / (2 * x + 1);
      return true;
    }
    case 7: return F2ClosedForm(pair_code, N, n, r);
    case 9: {
      const float b = 2 * N[1] + 2 * N[3] + N[4] - N[0];
      r = 1 - std::sqrt(PositiveRoot(b, 8 * n * N[4], n));
      return true;
    }
    case 10: {
      const float b = 2 * N[7] + 2 * N[5] + N[4] - N[8];
      r = 1 - std::sqrt(PositiveRoot(b, 8 * n * N[4], n));
      return true;
    }
    case 11:
    case 12: {
      // x = (1 - r)^2 / (1 + 2r), solved back for r.
      const float x = LinesRoot(2, population_type == 12, N, n);
      r = (x + 1) - std::sqrt(x * x + 3 * x);
      return true;
    }
    case 17:
    case 18: r = 1 - std::sqrt(LinesRoot(1, population_type == 18, N, n)); return true;
    case 19:
    case 20: r = 1 - std::cbrt(LinesRoot(2, population_type == 20, N, n)); return true;
    default:
      return false;  // 8 and 13 to 16 iterate; anything else is not a population type
  }
}

}  // namespace gae
