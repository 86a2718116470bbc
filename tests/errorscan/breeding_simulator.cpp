#include "errorscan/breeding_simulator.h"

namespace gae::testing {

double BreedingSimulator::Uniform() {
  // splitmix64: fast, and independent of the library's own stream.
  uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return static_cast<double>(z >> 11) * 0x1.0p-53;
}

Haplotype BreedingSimulator::Meiosis(const Individual& parent) {
  bool on_second = Uniform() < 0.5;
  Haplotype out;
  out[0] = on_second ? parent.second[0] : parent.first[0];
  if (Uniform() < r12_) on_second = !on_second;
  out[1] = on_second ? parent.second[1] : parent.first[1];
  if (Uniform() < r23_) on_second = !on_second;
  out[2] = on_second ? parent.second[2] : parent.first[2];
  return out;
}

Individual BreedingSimulator::Inbred(Individual parent) {
  while (parent.first != parent.second) parent = Self(parent);
  return parent;
}

std::array<char, 3> BreedingSimulator::Biparental(int type) {
  const Individual f1{{1, 1, 1}, {0, 0, 0}};
  const uint8_t recurrent = (type % 2 == 1) ? 1 : 0;
  auto bc1 = [&] { return Backcross(f1, recurrent); };
  auto bc2 = [&] { return Backcross(bc1(), recurrent); };
  Individual ind;
  switch (type) {
    case 1: case 2: ind = bc1(); break;
    case 3: ind = Doubled(f1); break;
    case 4: ind = Inbred(f1); break;
    case 5: case 6: ind = Inbred(bc1()); break;
    case 7: ind = Self(f1); break;
    case 8: ind = Self(Self(f1)); break;
    case 9: case 10: ind = bc2(); break;
    case 11: case 12: ind = Inbred(bc2()); break;
    case 13: case 14: ind = Self(bc1()); break;
    case 15: case 16: ind = Self(bc2()); break;
    case 17: case 18: ind = Doubled(bc1()); break;
    default: ind = Doubled(bc2()); break;
  }
  std::array<char, 3> letters;
  for (int k = 0; k < 3; ++k) letters[k] = "BHA"[ind.first[k] + ind.second[k]];
  return letters;
}

std::array<int, 3> BreedingSimulator::Clonal() {
  // First parent: allele A (0) on one chromosome, B (1) on the other; second parent C, D.
  const Haplotype a = Meiosis({{0, 0, 0}, {1, 1, 1}});
  const Haplotype c = Meiosis({{0, 0, 0}, {1, 1, 1}});
  return {2 * a[0] + c[0], 2 * a[1] + c[1], 2 * a[2] + c[2]};
}

Haplotype BreedingSimulator::PureLine(int type) {
  auto founder = [](uint8_t f) { return Haplotype{f, f, f}; };
  auto cross = [&](uint8_t f) { return Meiosis({founder(f), founder(static_cast<uint8_t>(f + 1))}); };
  Individual last;
  if (type == 1 || type == 2) {
    last = {cross(0), cross(2)};
  } else {
    last = {Meiosis({cross(0), cross(2)}), Meiosis({cross(4), cross(6)})};
  }
  if (type == 1 || type == 3) return Meiosis(last);
  return Inbred(last).first;
}

}  // namespace gae::testing
