// Three-locus chances of the clonal and multi-parent populations, as joint chances of the
// triple (left, middle, right), index (left * n + middle) * n + right over the n states.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace gae {

// Clonal F1 and double cross in known phase: the first parent transmits allele A or B, the
// second C or D, each through its own meiosis; state = 2 (first parent's allele is B) +
// (second parent's allele is D), so A = AC, B = AD, C = BC, D = BD. Without interference
// every interval contributes one factor for each parent, and the one-marker share 1/4 stays.
std::vector<float> ClonalTriples(float r12, float r23);

// The law of a three-locus haplotype over the founders: chances[(x1 * F + x2) * F + x3] that
// it carries founder x1, x2, x3 at the three loci.
struct FounderHaplotype {
  int32_t founders = 0;
  std::vector<float> chances;
};

FounderHaplotype PureFounder(int32_t founders, int32_t founder);

// The haplotype passed on by an individual whose two chromosomes are independent with laws
// `first` and `second`, when it takes, at the three loci, the first (bit 0) or second (bit 1)
// chromosome with the chances `origins` (index 4 b1 + 2 b2 + b3).
FounderHaplotype Transmit(const FounderHaplotype& first, const FounderHaplotype& second,
                          const std::array<float, 8>& origins);

// Four-way (31, types 1 DH and 2 RIL) and eight-way (32, types 3 DH and 4 RIL) lines bred
// through the funnel (A x B) x (C x D), and for eight founders crossed with (E x F) x (G x H);
// a doubled haploid doubles one gamete of the last individual, a recombinant inbred line is
// selfed from it to homozygosity. Empty for any other design or type.
std::vector<float> PureLineTriples(int32_t design, int32_t type, float r12, float r23, float r13);

}  // namespace gae
