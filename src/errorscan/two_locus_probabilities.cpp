#include "errorscan/two_locus_probabilities.h"

#include <cmath>

#include "errorscan/population_states.h"
#include "vocabulary/population.h"
#include "twopoint/mapping_function.h"

namespace gae {

float InbredExpansion(float r) { return 2.0f * r / (1.0f + 2.0f * r); }

std::vector<float> MarginalProbabilities(int32_t design, int32_t type) {
  if (StateLetters(design, type).empty()) return {};
  if (design == kClonalDesign || design == kFourWayDesign) return std::vector<float>(4, 0.25f);
  if (design == kEightWayDesign) return std::vector<float>(8, 0.125f);
  const ClassRatios p = ExpectedRatios(type);
  return {p.p2, p.p1, p.p0};
}

namespace {

// Two-state tables in the order (first, first), (first, second), (second, first),
// (second, second); s is the chance of the rarer parent's type at both markers.
std::vector<float> TwoClassTable(int32_t type, float r) {
  const float c = 1.0f - r;
  switch (type) {
    case 1: case 2: case 3: return {c / 2.0f, r / 2.0f, r / 2.0f, c / 2.0f};
    case 4: {
      const float rr = InbredExpansion(r);
      return {(1.0f - rr) / 2.0f, rr / 2.0f, rr / 2.0f, (1.0f - rr) / 2.0f};
    }
    default: break;
  }
  float s = 0.0f;
  float common = 0.0f;  // the share of the recurrent parent's type that no meiosis can break
  float off = 0.0f;     // 1/4 or 1/8: the one-marker share of the rarer type
  switch (type) {
    case 5: case 6: s = c * (1.0f - InbredExpansion(r)) / 4.0f; common = 0.5f; off = 0.25f; break;
    case 9: case 10: case 17: case 18: s = c * c / 4.0f; common = 0.5f; off = 0.25f; break;
    case 11: case 12:
      s = c * c * (1.0f - InbredExpansion(r)) / 8.0f; common = 0.75f; off = 0.125f; break;
    case 19: case 20: s = c * c * c / 8.0f; common = 0.75f; off = 0.125f; break;
    default: return {};
  }
  // Types backcrossed to P1 are odd (5, 9, 11, 17, 19); to P2 even.
  if (type % 2 == 1) return {s + common, off - s, off - s, s};
  return {s, off - s, off - s, s + common};
}

// Three-state tables (A, H, B) x (A, H, B), symmetric in the two markers.
std::vector<float> ThreeClassTable(int32_t type, float r) {
  const float c = 1.0f - r;
  const float q = 1.0f - 2.0f * r + 2.0f * r * r;
  float aa = 0, ah = 0, ab = 0, hh = 0, hb = 0, bb = 0;
  switch (type) {
    case 7:
      aa = c * c / 4.0f; ah = r * c / 2.0f; ab = r * r / 4.0f;
      hh = q / 2.0f; hb = r * c / 2.0f; bb = c * c / 4.0f;
      break;
    case 8:
      aa = c / 4.0f + c * c * c * c / 8.0f + r * r * r * r / 8.0f;
      ah = r * c * (1.0f - r + r * r) / 2.0f;
      ab = r / 4.0f + r * r * c * c / 4.0f;
      hh = q / 2.0f;  // kept above the true q^2/4: see the header
      hb = ah;
      bb = aa;
      break;
    case 13: case 14:
      aa = 0.5f - r / 4.0f + c * c * c / 8.0f;
      ah = r / 4.0f + r * c * c / 4.0f;
      ab = r / 8.0f + r * r * c / 8.0f;
      hh = c * q / 4.0f;
      hb = r * c * c / 4.0f;
      bb = c * c * c / 8.0f;
      break;
    case 15: case 16:
      aa = c * c / 8.0f + 5.0f / 8.0f + c * c * c * c / 16.0f;
      ah = 1.0f / 8.0f - c * c * (1.0f - r + r * r) / 8.0f;
      ab = 1.0f / 16.0f - c * c * (1.0f - r * r) / 16.0f;
      hh = c * c * q / 8.0f;
      hb = r * c * c * c / 8.0f;
      bb = c * c * c * c / 16.0f;
      break;
    default: return {};
  }
  // Types 14 and 16 are 13 and 15 with the two parents' roles exchanged.
  if (type == 14 || type == 16) {
    std::swap(aa, bb);
    std::swap(ah, hb);
  }
  return {aa, ah, ab, ah, hh, hb, ab, hb, bb};
}

std::vector<float> ClonalTable(float r) {
  // Each parent transmits one gamete: (1-r)/2 for either non-recombinant, r/2 for either
  // recombinant, and the two parents are independent.
  const float c = 1.0f - r;
  const float a = c * c / 4.0f, b = r * c / 4.0f, d = r * r / 4.0f;
  const float first[8] = {a, b, b, a, b, d, d, b};
  std::vector<float> table(16);
  for (int i = 0; i < 8; ++i) {
    table[i] = first[i];
    table[15 - i] = first[i];
  }
  return table;
}

// How two founders of a multi-parent cross are related: 0 the same founder, 1 sisters of the
// first cross (A-B, C-D, ...), 2 the same half of an eight-way cross, 3 the rest.
int FounderRelation(int f, int g, int founders) {
  if (f == g) return 0;
  if ((f ^ 1) == g) return 1;
  if (founders == 8 && f / 4 == g / 4) return 2;
  return 3;
}

std::vector<float> PureLineTable(int32_t design, int32_t type, float r) {
  const float c = 1.0f - r;
  const float w = 1.0f + 2.0f * r;
  float share[4] = {0, 0, 0, 0};
  int founders = 4;
  if (design == kFourWayDesign && type == 1) {
    share[0] = c * c / 4.0f; share[1] = r * c / 4.0f; share[3] = r / 8.0f;
  } else if (design == kFourWayDesign && type == 2) {
    share[0] = c / (4.0f * w); share[1] = r / (4.0f * w); share[3] = share[1];
  } else if (design == kEightWayDesign && type == 3) {
    founders = 8;
    share[0] = c * c * c / 8.0f; share[1] = r * c * c / 8.0f;
    share[2] = r * c / 16.0f; share[3] = r / 32.0f;
  } else if (design == kEightWayDesign && type == 4) {
    founders = 8;
    share[0] = c * c / (8.0f * w); share[1] = r * c / (8.0f * w);
    share[2] = r / (16.0f * w); share[3] = share[2];
  } else {
    return {};
  }
  std::vector<float> table(founders * founders);
  for (int f = 0; f < founders; ++f)
    for (int g = 0; g < founders; ++g) table[f * founders + g] = share[FounderRelation(f, g, founders)];
  return table;
}

}  // namespace

std::vector<float> TwoLocusFromRec(int32_t design, int32_t type, float r) {
  if (StateLetters(design, type).empty()) return {};
  switch (design) {
    case kBiparentalDesign:
      return StateLetters(design, type).size() == 2 ? TwoClassTable(type, r) : ThreeClassTable(type, r);
    case kClonalDesign: return ClonalTable(r);
    default: return PureLineTable(design, type, r);
  }
}

std::vector<float> TwoLocusProbabilities(int32_t design, int32_t type, int32_t mapping_function,
                                         float position1, float position2) {
  const float r = MapDistanceToRec(mapping_function, std::fabs(position2 - position1));
  return TwoLocusFromRec(design, type, r);
}

}  // namespace gae
