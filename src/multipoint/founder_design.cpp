#include "multipoint/founder_design.h"

namespace gae {

int FounderCount(int32_t type) { return type == 1 || type == 2 ? 4 : type == 3 || type == 4 ? 8 : 0; }

namespace {

// Four-way inbred lines keep which chromosome of the four-way plant a locus came from and the
// founder each of its two chromosomes carries there: state = chromosome * 4 + first's * 2 +
// second's founder (0 or 1 within its pair).
bool KeepsBothChromosomes(const HmmDesign& d) { return d.founders == 4 && d.inbred; }

}  // namespace

int FounderOfState(const HmmDesign& d, int s) {
  if (!KeepsBothChromosomes(d)) return s;
  return s / 4 == 0 ? (s >> 1 & 1) : 2 + (s & 1);
}

HmmDesign MakeFounderDesign(int32_t type) {
  HmmDesign d;
  d.population_type = type;
  const int f = FounderCount(type);
  if (f == 0) return d;
  d.num_classes = f;
  d.founders = f;
  d.inbred = type == 2 || type == 4;
  d.num_states = KeepsBothChromosomes(d) ? 8 : f;
  for (int s = 0; s < d.num_states; ++s) {
    d.state_class[s] = static_cast<int8_t>(FounderOfState(d, s));
    d.initial[s] = 1.0 / d.num_states;
  }
  return d;
}

void FounderTransitions(const HmmDesign& d, double r, double* m) {
  const double c = 1 - r, w = 1 + 2 * r;
  if (KeepsBothChromosomes(d)) {
    // Selfing moves between the plant's two chromosomes as in two-way inbred lines; each
    // chromosome changes founder only by a crossover in the meiosis that made it.
    const double moves = 2 * r / w;
    for (int s = 0; s < 8; ++s)
      for (int t = 0; t < 8; ++t)
        m[s * kMaxChainStates + t] = (s / 4 == t / 4 ? 1 - moves : moves) * ((s >> 1 & 1) == (t >> 1 & 1) ? c : r) *
                                     ((s & 1) == (t & 1) ? c : r);
    return;
  }
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
