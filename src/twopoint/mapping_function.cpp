#include "twopoint/mapping_function.h"

#include <cmath>

namespace gae {

float MapRecToDistance(int mapping_function, float rec_freq) {
  if (rec_freq < 0.0f || rec_freq > 1.0f) return kUnlinkedDistance;
  if (!(std::fabs(rec_freq - 0.5f) > 1e-8f)) return kUnlinkedDistance;  // NaN too
  const float v = 0.5f - std::fabs(0.5f - rec_freq);
  switch (mapping_function) {
    case 1: return 25.0f * std::log((1.0f + 2.0f * v) / (1.0f - 2.0f * v));
    case 2: {
      // At v = 0 the product is -0, which a report would print with its sign.
      const float d = -50.0f * std::log(1.0f - 2.0f * v);
      return d == 0.0f ? 0.0f : d;
    }
    case 3: return 100.0f * v;
    default: return kUnlinkedDistance;
  }
}

float MapDistanceToRec(int mapping_function, float distance) {
  if (distance < 0.0f) return 0.0f;
  if (distance >= 999.0f) return 0.5f;
  float r = 0.5f;
  switch (mapping_function) {
    case 1: {
      const float e = std::exp(distance / 25.0f);
      r = 0.5f * (e - 1.0f) / (e + 1.0f);
      break;
    }
    case 2: r = 0.5f * (1.0f - std::exp(-distance / 50.0f)); break;
    case 3: r = distance / 100.0f; break;
    default: return 0.5f;
  }
  return r > 0.5f ? 0.5f : r;
}

}  // namespace gae
