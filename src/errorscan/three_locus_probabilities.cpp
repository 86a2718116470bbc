#include "errorscan/three_locus_probabilities.h"

#include <cmath>

#include "errorscan/founder_lines.h"
#include "errorscan/generation_chain.h"
#include "errorscan/population_states.h"
#include "errorscan/two_locus_probabilities.h"
#include "twopoint/mapping_function.h"

namespace gae {

float ClampProbability(float p) {
  if (std::isnan(p)) return 0.0f;
  if (p > 1.0f) return 1.0f;
  if (p < 0.0f) return 0.0f;
  return p;
}

namespace {

ThreeLocusTable EmptyTable(int32_t num_states) {
  ThreeLocusTable t;
  t.num_states = num_states;
  t.num_pairs = num_states * num_states;
  t.values.assign(static_cast<std::size_t>(t.num_pairs) * num_states, 0.0f);
  return t;
}

void ClampAll(ThreeLocusTable& t) {
  for (float& v : t.values) v = ClampProbability(v);
}

// Backcrosses, doubled haploids and (with R) inbred lines: the chance of the first state in
// the middle for the pairs (1,1), (1,2), (2,1), (2,2); the second state takes the complement.
ThreeLocusTable TwoStateClosedForm(float r12, float r23, float r13) {
  ThreeLocusTable t = EmptyTable(2);
  const float same = (1.0f - r12) * (1.0f - r23) / (1.0f - r13);
  const float differ = (1.0f - r12) * r23 / r13;
  const float first[4] = {same, differ, 1.0f - differ, 1.0f - same};
  for (int pair = 0; pair < 4; ++pair) {
    t.values[pair * 2] = first[pair];
    t.values[pair * 2 + 1] = 1.0f - first[pair];
  }
  return t;
}

// The F2: each individual joins two independent F1 gametes. A gamete's chance is a product of
// one factor for each interval; the pair's chance is the F2 two-locus table at r13. The middle
// states A and H are worked out, B is what remains.
ThreeLocusTable F2ClosedForm(float r12, float r23, float r13) {
  auto gamete = [&](int h) {
    const int a1 = (h >> 2) & 1, a2 = (h >> 1) & 1, a3 = h & 1;
    return 0.5f * (a1 == a2 ? 1.0f - r12 : r12) * (a2 == a3 ? 1.0f - r23 : r23);
  };
  float joint[3][3][3] = {};
  for (int x = 0; x < kNumHaplotypes; ++x)
    for (int y = 0; y < kNumHaplotypes; ++y) {
      // Allele count 2 is A (state 0), 1 is H (1), 0 is B (2).
      const int l = 2 - (((x >> 2) & 1) + ((y >> 2) & 1));
      const int m = 2 - (((x >> 1) & 1) + ((y >> 1) & 1));
      const int r = 2 - ((x & 1) + (y & 1));
      joint[l][m][r] += gamete(x) * gamete(y);
    }
  const std::vector<float> outer = TwoLocusFromRec(kBiparentalDesign, 7, r13);
  ThreeLocusTable t = EmptyTable(3);
  for (int l = 0; l < 3; ++l)
    for (int r = 0; r < 3; ++r) {
      const int pair = l * 3 + r;
      const float a = joint[l][0][r] / outer[pair];
      const float h = joint[l][1][r] / outer[pair];
      t.values[pair * 3] = a;
      t.values[pair * 3 + 1] = h;
      t.values[pair * 3 + 2] = 1.0f - a - h;
    }
  return t;
}

// Every other bi-parental type: the bred population's genotype frequencies, summed into the
// observed triples of its states and conditioned on the flanking pair.
ThreeLocusTable FromGenerations(int32_t type, float r12, float r23, float r13) {
  const std::string_view states = StateLetters(kBiparentalDesign, type);
  const int32_t n = static_cast<int32_t>(states.size());
  const GenotypeVector genotypes = BiparentalGenotypes(type, r12, r23, r13);
  ThreeLocusTable t = EmptyTable(n);
  for (int g = 0; g < kNumGenotypes; ++g) {
    if (genotypes[g] == 0.0f) continue;
    int h1 = 0, h2 = 0;
    GenotypeHaplotypes(g, h1, h2);
    int s[3];
    bool seen = true;
    for (int locus = 0; locus < 3; ++locus) {
      const int shift = 2 - locus;
      const int count = ((h1 >> shift) & 1) + ((h2 >> shift) & 1);
      s[locus] = StateOf(states, "BHA"[count]);
      seen = seen && s[locus] >= 0;
    }
    if (!seen) continue;  // a class this population cannot show carries no frequency
    t.values[(s[0] * n + s[2]) * n + s[1]] += genotypes[g];
  }
  for (int pair = 0; pair < t.num_pairs; ++pair) {
    float sum = 0.0f;
    for (int m = 0; m < n; ++m) sum += t.values[pair * n + m];
    for (int m = 0; m < n; ++m) t.values[pair * n + m] /= sum;
  }
  return t;
}

ThreeLocusTable Biparental(int32_t type, float r12, float r23, float r13) {
  switch (type) {
    case 1: case 2: case 3: return TwoStateClosedForm(r12, r23, r13);
    case 4:
      return TwoStateClosedForm(InbredExpansion(r12), InbredExpansion(r23), InbredExpansion(r13));
    case 7: return F2ClosedForm(r12, r23, r13);
    case 17: case 18: return FromGenerations(type - 8, r12, r23, r13);
    default: return FromGenerations(type, r12, r23, r13);
  }
}

// Joint triple chances of clonal and pure-line designs into the table layout.
ThreeLocusTable FromJoint(int32_t design, int32_t n, const std::vector<float>& joint) {
  ThreeLocusTable t = EmptyTable(n);
  for (int l = 0; l < n; ++l)
    for (int m = 0; m < n; ++m)
      for (int r = 0; r < n; ++r)
        t.values[FlankPairIndex(design, n, l, r) * n + m] = joint[(l * n + m) * n + r];
  return t;
}

}  // namespace

ThreeLocusTable ThreeLocusFromRec(int32_t design, int32_t type, float r12, float r23, float r13) {
  const int32_t n = static_cast<int32_t>(StateLetters(design, type).size());
  if (n == 0) return ThreeLocusTable{};
  ThreeLocusTable t;
  if (design == kBiparentalDesign) {
    t = Biparental(type, r12, r23, r13);
  } else if (design == kClonalDesign) {
    t = FromJoint(design, n, ClonalTriples(r12, r23));
  } else {
    t = FromJoint(design, n, PureLineTriples(design, type, r12, r23, r13));
  }
  ClampAll(t);
  return t;
}

ThreeLocusTable ThreeLocusProbabilities(int32_t design, int32_t type, int32_t mapping_function,
                                        float left, float middle, float right) {
  const float r12 = MapDistanceToRec(mapping_function, middle - left);
  const float r23 = MapDistanceToRec(mapping_function, right - middle);
  const float r13 = MapDistanceToRec(mapping_function, right - left);
  return ThreeLocusFromRec(design, type, r12, r23, r13);
}

}  // namespace gae
