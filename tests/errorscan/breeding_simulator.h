// A breeder in miniature for checking the probability tables: three loci on one chromosome,
// crossovers independent in each interval (no interference, so with Haldane distances r13 =
// r12 + r23 - 2 r12 r23), every population bred meiosis by meiosis from inbred founders.
#pragma once

#include <array>
#include <cstdint>

namespace gae::testing {

// Founder carried at each of the three loci.
using Haplotype = std::array<uint8_t, 3>;
struct Individual {
  Haplotype first;
  Haplotype second;
};

class BreedingSimulator {
 public:
  BreedingSimulator(double r12, double r23, uint64_t seed) : r12_(r12), r23_(r23), state_(seed) {}

  Haplotype Meiosis(const Individual& parent);
  Individual Self(const Individual& parent) { return {Meiosis(parent), Meiosis(parent)}; }
  Individual Doubled(const Individual& parent) {
    const Haplotype g = Meiosis(parent);
    return {g, g};
  }
  // Selfed until the line is homozygous at the three loci; it is then fixed.
  Individual Inbred(Individual parent);

  // Bi-parental populations 1 to 20: founder 1 is P1, founder 0 is P2. The letters are the
  // genotypes at the three loci: A (two P1 alleles), H, B.
  std::array<char, 3> Biparental(int type);
  // Clonal F1 in known phase: states A = AC, B = AD, C = BC, D = BD as 0..3.
  std::array<int, 3> Clonal();
  // Four-way (type 1 DH, 2 RIL) and eight-way (3 DH, 4 RIL) lines: founders 0..7.
  Haplotype PureLine(int type);

  double Uniform();

 private:
  Individual Backcross(const Individual& parent, uint8_t recurrent) {
    const uint8_t f = recurrent;
    return {Haplotype{f, f, f}, Meiosis(parent)};
  }

  double r12_;
  double r23_;
  uint64_t state_;
};

}  // namespace gae::testing
