// LOD score and standard error of an estimate.
#include <cmath>

#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace gae {

float TwoPointLogLik(const float cells[9], const float probs[9]) {
  float sum = 0.0f;
  for (int k = 0; k < 9; ++k)
    if (probs[k] > 0.0f) sum += cells[k] * std::log10(probs[k]);
  return sum;
}

void TwoPointScore(int population_type, int pair_code, const float cells[9], float rec_freq,
                   float& lod, float& std_err) {
  float at_r[9] = {};
  float at_half[9] = {};
  float h = 0.0f;
  TwoPointModel<float>(population_type, pair_code, cells, rec_freq, at_r, nullptr, &h);
  TwoPointModel<float>(population_type, pair_code, cells, 0.5f, at_half, nullptr, nullptr);
  lod = TwoPointLogLik(cells, at_r) - TwoPointLogLik(cells, at_half);
  // The inverse of the observed information; a NaN or non-positive variance gives 0.
  const float variance = -1 / h;
  std_err = variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

}  // namespace gae
