// Breeding generations followed exactly on three linked loci of a cross between two inbred
// parents.
//
// A three-locus haplotype is 3 bits, one for each locus (left marker in the highest bit); a bit
// of 1 is P1's allele, 0 P2's, so haplotype 7 is P1's chromosome and 0 is P2's. A three-locus
// genotype is an unordered pair of haplotypes: 36 of them, numbered by GenotypeIndex.
//
// A meiosis of a genotype picks a starting chromosome at random and switches chromosome between
// loci 1-2, 2-3, or both. With r12, r23 and r13 the three pairwise frequencies, the chances of
// these patterns are: switch in the first interval only (r12 - r23 + r13)/2, in the second only
// (r23 - r12 + r13)/2, in both (r12 + r23 - r13)/2, none 1 - (r12 + r23 + r13)/2. Each pairwise
// frequency is then reproduced exactly, whatever the interference implied by the mapping
// function; without interference the double share is r12 r23.
#pragma once

#include <array>
#include <cstdint>

namespace gae {

inline constexpr int kNumHaplotypes = 8;
inline constexpr int kNumGenotypes = 36;

using GenotypeVector = std::array<float, kNumGenotypes>;
using GameteVector = std::array<float, kNumHaplotypes>;
// [gamete * 36 + genotype]: the share of each gamete among those of each genotype.
using GameteTable = std::array<float, kNumHaplotypes * kNumGenotypes>;
// [offspring * 36 + parent]: the genotypes of a genotype's selfed offspring.
using SelfingTable = std::array<float, kNumGenotypes * kNumGenotypes>;

int GenotypeIndex(int haplotype1, int haplotype2);
// The two haplotypes of genotype `index`, the lower first.
void GenotypeHaplotypes(int index, int& haplotype1, int& haplotype2);

// Chances of the four chromosome-switch patterns of one meiosis, in the order none, first
// interval only, second only, both.
std::array<float, 4> SwitchPatterns(float r12, float r23, float r13);

// The same as chances of the chromosome (bit 0 first, 1 second) taken at each locus, index
// 4 b1 + 2 b2 + b3: each pattern starts on either chromosome with chance 1/2.
std::array<float, 8> MeiosisOrigins(float r12, float r23, float r13);

GameteTable GameteMatrix(float r12, float r23, float r13);
SelfingTable SelfingMatrix(float r12, float r23, float r13);

// The steps of a breeding scheme on a vector of genotype frequencies.
class GenerationChain {
 public:
  GenerationChain(float r12, float r23, float r13);

  static GenotypeVector F1();
  GameteVector Gametes(const GenotypeVector& v) const;
  // Crossed to an inbred parent (haplotype 7 for P1, 0 for P2).
  GenotypeVector Backcross(const GenotypeVector& v, int parent_haplotype) const;
  // Lines doubled from one gamete of each individual.
  GenotypeVector DoubledHaploid(const GenotypeVector& v) const;
  GenotypeVector Self(const GenotypeVector& v) const;
  // Selfed until every line is homozygous (the chain's limit; what is still heterozygous
  // after the last generation, less than 1e-9, is dropped).
  GenotypeVector InbredLimit(const GenotypeVector& v) const;

 private:
  GameteTable gametes_;
  SelfingTable selfing_;
};

// The genotype vector of a bi-parental population type (1 to 20) bred generation by
// generation from the F1; all zero for an unknown type.
GenotypeVector BiparentalGenotypes(int32_t type, float r12, float r23, float r13);

// Chances that a line bred to homozygosity from one individual carries, at the three loci,
// the individual's first (bit 0) or second (bit 1) chromosome: index = 4 b1 + 2 b2 + b3.
std::array<float, 8> InbredOrigins(float r12, float r23, float r13);

}  // namespace gae
