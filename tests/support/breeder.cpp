#include "support/breeder.h"

#include <cmath>

namespace gae::testing {

double HaldaneFrequency(double distance_cm) { return 0.5 * (1.0 - std::exp(-2.0 * distance_cm / 100.0)); }

Breeder Breeder::AtPositions(const std::vector<double>& positions_cm, uint64_t seed) {
  std::vector<double> r;
  for (std::size_t k = 1; k < positions_cm.size(); ++k) r.push_back(HaldaneFrequency(positions_cm[k] - positions_cm[k - 1]));
  return Breeder(std::move(r), seed);
}

double Breeder::Uniform() {
  uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return static_cast<double>(z >> 11) * 0x1.0p-53;
}

Chromosome Breeder::Meiosis(const Plant& parent) {
  Chromosome out(parent.first.size());
  bool on_second = Uniform() < 0.5;
  for (std::size_t k = 0; k < out.size(); ++k) {
    if (k > 0 && Uniform() < r_[k - 1]) on_second = !on_second;
    out[k] = on_second ? parent.second[k] : parent.first[k];
  }
  return out;
}

Plant Breeder::Inbred(Plant parent) {
  while (parent.first != parent.second) parent = Self(parent);
  return parent;
}

Plant Breeder::Biparental(int type) {
  const Plant f1 = Hybrid(0, 1);
  const uint8_t recurrent = type % 2 == 1 ? 0 : 1;
  auto bc1 = [&] { return Backcross(f1, recurrent); };
  auto bc2 = [&] { return Backcross(bc1(), recurrent); };
  switch (type) {
    case 1: case 2: return bc1();
    case 3: return Doubled(f1);
    case 4: return Inbred(f1);
    case 5: case 6: return Inbred(bc1());
    case 7: return Self(f1);
    case 8: return Self(Self(f1));
    case 9: case 10: return bc2();
    case 11: case 12: return Inbred(bc2());
    case 13: case 14: return Self(bc1());
    case 15: case 16: return Self(bc2());
    case 17: case 18: return Doubled(bc1());
    default: return Doubled(bc2());
  }
}

Chromosome Breeder::PureLine(int type) {
  auto cross = [&](uint8_t f) { return Meiosis(Hybrid(f, static_cast<uint8_t>(f + 1))); };
  // Braced lists are evaluated left to right, which keeps the stream's order fixed.
  Plant last;
  if (type <= 2) {
    last = {cross(0), cross(2)};
  } else {
    last = {Meiosis({cross(0), cross(2)}), Meiosis({cross(4), cross(6)})};
  }
  if (type == 1 || type == 3) return Meiosis(last);
  return Inbred(last).first;
}

char BiparentalLetter(const Plant& plant, int locus) { return "AHB"[plant.first[locus] + plant.second[locus]]; }

}  // namespace gae::testing
