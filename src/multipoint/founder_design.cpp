#include "multipoint/founder_design.h"

namespace gae {

int FounderCount(int32_t type) { return type == 1 || type == 2 ? 4 : type == 3 || type == 4 ? 8 : 0; }

HmmDesign MakeFounderDesign(int32_t type) {
  HmmDesign d;
  d.population_type = type;
  const int f = FounderCount(type);
  if (f == 0) return d;
  d.num_states = f;
  d.num_classes = f;
  d.founders = f;
  d.inbred = type == 2 || type == 4;
  for (int s = 0; s < f; ++s) {
    d.state_class[s] = static_cast<int8_t>(s);
    d.initial[s] = 1.0 / f;
  }
  return d;
}

void FounderTransitions(const HmmDesign& d, double r, double* m) {
  const double c = 1 - r, w = 1 + 2 * r;
  // Chances of the same founder, its sister, another founder of its half, and any founder of
  // the other half (in four-way lines the half is the sister pair).
  double same, sister, half, other;
  if (d.founders == 4) {
    same = d.inbred ? c / w : c * c;
    sister = d.inbred ? r / w : r * c;
    other = d.inbred ? r / w : r / 2;
    half = other;
  } else {
    same = d.inbred ? c * c / w : c * c * c;
    sister = d.inbred ? r * c / w : r * c * c;
    half = d.inbred ? r / (2 * w) : r * c / 2;
    other = d.inbred ? r / (2 * w) : r / 4;
  }
  for (int s = 0; s < d.founders; ++s)
    for (int t = 0; t < d.founders; ++t)
      m[s * kMaxChainStates + t] = s == t ? same : s / 2 == t / 2 ? sister : s / 4 == t / 4 ? half : other;
}

}  // namespace gae
