// A breeder in miniature for the tests: one chromosome of loci, each plant carrying two
// homologues, every locus of a homologue holding the founder it came from (a small integer).
// Crossovers fall independently in each interval (no interference), so loci d cM apart
// recombine with the Haldane chance r = (1 - e^(-2d/100)) / 2 in every meiosis. Populations are
// bred meiosis by meiosis from inbred founders; the same seed breeds the same plants.
#pragma once

#include <cstdint>
#include <vector>

namespace gae::testing {

double HaldaneFrequency(double distance_cm);

// Founder at each locus.
using Chromosome = std::vector<uint8_t>;
struct Plant {
  Chromosome first, second;
};

class Breeder {
 public:
  // `interval_rec[k]`: the chance of a crossover between locus k and k + 1.
  Breeder(std::vector<double> interval_rec, uint64_t seed) : r_(std::move(interval_rec)), state_(seed) {}
  // Loci at these positions (cM, sorted).
  static Breeder AtPositions(const std::vector<double>& positions_cm, uint64_t seed);

  int Loci() const { return static_cast<int>(r_.size()) + 1; }
  // A uniform draw in [0, 1) from the breeder's own stream (splitmix64), independent of the
  // library's.
  double Uniform();

  Chromosome Founder(uint8_t f) const { return Chromosome(Loci(), f); }
  // The F1 of two inbred founders.
  Plant Hybrid(uint8_t a, uint8_t b) const { return {Founder(a), Founder(b)}; }
  // One gamete: a homologue drawn at random, switching at each crossover.
  Chromosome Meiosis(const Plant& parent);
  Plant Self(const Plant& parent) { return {Meiosis(parent), Meiosis(parent)}; }
  Plant Doubled(const Plant& parent) {
    Chromosome g = Meiosis(parent);
    return {g, g};
  }
  Plant Backcross(const Plant& parent, uint8_t recurrent) { return {Founder(recurrent), Meiosis(parent)}; }
  // Selfed until homozygous at every locus; the line is then fixed.
  Plant Inbred(Plant parent);

  // Bi-parental populations 1 to 20 from P1 (founder 0) and P2 (founder 1); odd backcross
  // types return to P1, even ones to P2.
  Plant Biparental(int type);
  // Progeny of two outbred parents: the first carries founders 0 (A) and 1 (B), the second
  // 2 (C) and 3 (D).
  Plant ClonalProgeny() { return {Meiosis(Hybrid(0, 1)), Meiosis(Hybrid(2, 3))}; }
  // Pure lines of the funnel (A x B) x (C x D), for eight founders crossed with
  // (E x F) x (G x H): type 1 four-way DH, 2 four-way RIL, 3 eight-way DH, 4 eight-way RIL.
  Chromosome PureLine(int type);

 private:
  std::vector<double> r_;
  uint64_t state_;
};

// Genotype letter of a bi-parental plant at a locus: A (two P1 alleles), H or B.
char BiparentalLetter(const Plant& plant, int locus);

}  // namespace gae::testing
