#include "errorscan/generation_chain.h"

#include <algorithm>

namespace gae {

int GenotypeIndex(int haplotype1, int haplotype2) {
  const int a = std::min(haplotype1, haplotype2);
  const int b = std::max(haplotype1, haplotype2);
  return kNumHaplotypes * a - a * (a - 1) / 2 + (b - a);
}

void GenotypeHaplotypes(int index, int& haplotype1, int& haplotype2) {
  int a = 0;
  while (index >= kNumHaplotypes - a) {
    index -= kNumHaplotypes - a;
    ++a;
  }
  haplotype1 = a;
  haplotype2 = a + index;
}

std::array<float, 4> SwitchPatterns(float r12, float r23, float r13) {
  const float first = (r12 - r23 + r13) / 2.0f;
  const float second = (r23 - r12 + r13) / 2.0f;
  const float both = (r12 + r23 - r13) / 2.0f;
  return {1.0f - first - second - both, first, second, both};
}

namespace {

// The gamete that takes its alleles from chromosome h1 or h2 as `from` says (bit set: h2),
// locus by locus.
int Assemble(int h1, int h2, int from) { return (h1 & ~from & 7) | (h2 & from); }

}  // namespace

std::array<float, 8> MeiosisOrigins(float r12, float r23, float r13) {
  const std::array<float, 4> pattern = SwitchPatterns(r12, r23, r13);
  // Chromosome taken at the three loci for each pattern, starting on the first.
  constexpr int kOrigin[4] = {0b000, 0b011, 0b001, 0b010};
  std::array<float, 8> origins{};
  for (int p = 0; p < 4; ++p) {
    origins[kOrigin[p]] += pattern[p] / 2.0f;
    origins[kOrigin[p] ^ 7] += pattern[p] / 2.0f;
  }
  return origins;
}

GameteTable GameteMatrix(float r12, float r23, float r13) {
  const std::array<float, 8> origins = MeiosisOrigins(r12, r23, r13);
  GameteTable table{};
  for (int g = 0; g < kNumGenotypes; ++g) {
    int h1 = 0, h2 = 0;
    GenotypeHaplotypes(g, h1, h2);
    for (int o = 0; o < 8; ++o) table[Assemble(h1, h2, o) * kNumGenotypes + g] += origins[o];
  }
  return table;
}

namespace {

SelfingTable SelfingFromGametes(const GameteTable& gametes) {
  SelfingTable table{};
  for (int parent = 0; parent < kNumGenotypes; ++parent) {
    for (int g1 = 0; g1 < kNumHaplotypes; ++g1) {
      const float p1 = gametes[g1 * kNumGenotypes + parent];
      if (p1 == 0.0f) continue;
      for (int g2 = 0; g2 < kNumHaplotypes; ++g2) {
        const float p2 = gametes[g2 * kNumGenotypes + parent];
        table[GenotypeIndex(g1, g2) * kNumGenotypes + parent] += p1 * p2;
      }
    }
  }
  return table;
}

bool IsHomozygous(int genotype) {
  int h1 = 0, h2 = 0;
  GenotypeHaplotypes(genotype, h1, h2);
  return h1 == h2;
}

}  // namespace

SelfingTable SelfingMatrix(float r12, float r23, float r13) {
  return SelfingFromGametes(GameteMatrix(r12, r23, r13));
}

GenerationChain::GenerationChain(float r12, float r23, float r13)
    : gametes_(GameteMatrix(r12, r23, r13)), selfing_(SelfingFromGametes(gametes_)) {}

GenotypeVector GenerationChain::F1() {
  GenotypeVector v{};
  v[GenotypeIndex(7, 0)] = 1.0f;
  return v;
}

GameteVector GenerationChain::Gametes(const GenotypeVector& v) const {
  GameteVector out{};
  for (int h = 0; h < kNumHaplotypes; ++h) {
    float sum = 0.0f;
    for (int g = 0; g < kNumGenotypes; ++g) sum += gametes_[h * kNumGenotypes + g] * v[g];
    out[h] = sum;
  }
  return out;
}

GenotypeVector GenerationChain::Backcross(const GenotypeVector& v, int parent_haplotype) const {
  const GameteVector gam = Gametes(v);
  GenotypeVector out{};
  for (int h = 0; h < kNumHaplotypes; ++h) out[GenotypeIndex(parent_haplotype, h)] += gam[h];
  return out;
}

GenotypeVector GenerationChain::DoubledHaploid(const GenotypeVector& v) const {
  const GameteVector gam = Gametes(v);
  GenotypeVector out{};
  for (int h = 0; h < kNumHaplotypes; ++h) out[GenotypeIndex(h, h)] = gam[h];
  return out;
}

GenotypeVector GenerationChain::Self(const GenotypeVector& v) const {
  GenotypeVector out{};
  for (int to = 0; to < kNumGenotypes; ++to) {
    float sum = 0.0f;
    for (int from = 0; from < kNumGenotypes; ++from) sum += selfing_[to * kNumGenotypes + from] * v[from];
    out[to] = sum;
  }
  return out;
}

GenotypeVector GenerationChain::InbredLimit(const GenotypeVector& v) const {
  // Each generation at least halves every heterozygous share, so 64 generations are ample.
  GenotypeVector current = v;
  for (int generation = 0; generation < 64; ++generation) {
    float heterozygous = 0.0f;
    for (int g = 0; g < kNumGenotypes; ++g)
      if (!IsHomozygous(g)) heterozygous += current[g];
    if (heterozygous < 1e-9f) break;
    current = Self(current);
  }
  for (int g = 0; g < kNumGenotypes; ++g)
    if (!IsHomozygous(g)) current[g] = 0.0f;
  return current;
}

GenotypeVector BiparentalGenotypes(int32_t type, float r12, float r23, float r13) {
  const GenerationChain chain(r12, r23, r13);
  const GenotypeVector f1 = GenerationChain::F1();
  // Odd types among the backcross-derived ones go back to P1, even ones to P2.
  const int recurrent = (type % 2 == 1) ? 7 : 0;
  switch (type) {
    case 1: case 2: return chain.Backcross(f1, recurrent);
    case 3: return chain.DoubledHaploid(f1);
    case 4: return chain.InbredLimit(f1);
    case 5: case 6: return chain.InbredLimit(chain.Backcross(f1, recurrent));
    case 7: return chain.Self(f1);
    case 8: return chain.Self(chain.Self(f1));
    case 9: case 10: return chain.Backcross(chain.Backcross(f1, recurrent), recurrent);
    case 11: case 12:
      return chain.InbredLimit(chain.Backcross(chain.Backcross(f1, recurrent), recurrent));
    case 13: case 14: return chain.Self(chain.Backcross(f1, recurrent));
    case 15: case 16: return chain.Self(chain.Backcross(chain.Backcross(f1, recurrent), recurrent));
    case 17: case 18: return chain.DoubledHaploid(chain.Backcross(f1, recurrent));
    case 19: case 20:
      return chain.DoubledHaploid(chain.Backcross(chain.Backcross(f1, recurrent), recurrent));
    default: return GenotypeVector{};
  }
}

std::array<float, 8> InbredOrigins(float r12, float r23, float r13) {
  const GenerationChain chain(r12, r23, r13);
  const GenotypeVector lines = chain.InbredLimit(GenerationChain::F1());
  std::array<float, 8> origins{};
  for (int h = 0; h < kNumHaplotypes; ++h) origins[~h & 7] = lines[GenotypeIndex(h, h)];
  return origins;
}

}  // namespace gae
