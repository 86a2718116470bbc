// Two-point estimation for four-way and eight-way pure lines: doubled haploids (types 1 4PDH,
// 3 8PDH) or recombinant inbred lines by selfing (2 4PRIL, 4 8PRIL) from the funnel cross
// (A x B) x (C x D), crossed for eight founders with (E x F) x (G x H).
//
// A line is homozygous for one founder's allele at each marker, so a marker pair gives a
// founders x founders table: cell F (a - 1) + b for founder a at the first marker and b at the
// second. Founders may share an allele at a marker; the reader then writes the letter of the
// first founder of that allele, and the observed count of a cell is the sum of several founder
// cells. The estimator is therefore an EM iteration: the E-step splits each observed count among
// the founder cells it may come from, the M-step has a closed form in r.
//
// The chance of a founder cell depends on r and on the kind of founder pair only: the same
// founder, the two founders of one first cross (sisters), founders of the same half of an
// eight-way funnel, or the rest. The estimate is folded into 0 to 1/2, unlike the bi-parental
// engine, since founders give no phase to exchange.
//
// All arithmetic is in 32-bit floats; every routine is pure and re-entrant.
#pragma once

#include <array>
#include <cstdint>

#include "vocabulary/population.h"

namespace gae {

inline constexpr int kMaxFounders = 8;

// Kind of the founder pair (a, b), 1-based.
enum PureLineKind : int { kSameFounder = 0, kSisterFounders = 1, kSameHalf = 2, kOtherFounders = 3 };
int PureLineCellKind(int founders, int a, int b);

// Chance of one founder cell of each kind at frequency r, clamped to 0..1. For type 2, r is the
// frequency of the inbred line (R = 2r / (1 + 2r)); type 4 is written in r itself.
std::array<float, 4> PureLineKindChances(int population_type, float r);

// The same chances unclamped, each with its first and second derivative in r (zero for an
// unknown type). The float chances above are these values, to the bit.
template <class Real>
struct PureLineKindTerm {
  Real p = 0, d1 = 0, d2 = 0;
};
template <class Real>
std::array<PureLineKindTerm<Real>, 4> PureLineKindTerms(int population_type, Real r);

// The observed classes of a marker pair: founders with equal digits in a marker's founder
// pattern (one decimal digit per founder, founder 1 leftmost) carry one allele, so the rows of
// such founders merge, and so do the columns. A class is headed by the cell of the first founder
// of each merged set, which is where the reader's letters put its count. It depends only on the
// two patterns, of which a data set has few, so it is built once per pattern pair.
struct PureLineClass {
  uint8_t head = 0;   // 0-based cell F (a - 1) + (b - 1)
  uint8_t cells = 0;  // founder cells in the class
  uint8_t first = 0;  // its cells are class_cells[first] onwards, in cell order
};
struct PureLinePairClasses {
  int founders = 0;
  int num_classes = 0;  // classes in the order of their head cells
  std::array<PureLineClass, kMaxFounders * kMaxFounders> classes{};
  std::array<uint8_t, kMaxFounders * kMaxFounders> class_cells{};
  // Of each founder cell: its class and its kind.
  std::array<uint8_t, kMaxFounders * kMaxFounders> cell_class{};
  std::array<uint8_t, kMaxFounders * kMaxFounders> cell_kind{};
};
PureLinePairClasses BuildPairClasses(int founders, int32_t first_pattern, int32_t second_pattern);

// The eight-way inbred lines' frequency from the sums of the split counts: the smallest root in
// 0..0.5 of a r^2 + b r + c = 0 (-c / b when a is 0; 0.5 when there is none).
float PureLineInbredRoot(float a, float b, float c);

// The 0-based allele group (the first founder that shares the allele) of each founder.
std::array<uint8_t, kMaxFounders> FounderHeads(int founders, int32_t pattern);

struct PureLineEstimate {
  float rec_freq = 0.5f;
  float lod = 0.0f;
};

// The estimate from the count of each class (`class_counts[c]`, in the order of `classes`).
// An uninformative pair, an EM that does not settle in 1000 rounds and an unknown type give
// 0.5; the frequency is folded to at most 0.5 (where the LOD becomes 0), the LOD is never
// negative, and a 4PRIL frequency is brought back from the inbred line's scale.
PureLineEstimate EstimatePureLinePair(int population_type, const PureLinePairClasses& classes,
                                      const float* class_counts);
// The same for `pairs` pairs that share `classes`, the counts of pair k at class_counts[k]. The
// pairs are estimated side by side, kPureLineLanes at a time, each exactly as alone.
inline constexpr int kPureLineLanes = 4;
void EstimatePureLinePairs(int population_type, const PureLinePairClasses& classes,
                           const float* const* class_counts, int pairs, PureLineEstimate* out);

// The pair from its two columns of founder letters (A to D or A to H; any other letter is
// missing). The first entry serves types 1 and 2, the second types 3 and 4.
PureLineEstimate PLMPairFourWay(int population_type, int64_t num_individuals,
                                int32_t first_pattern, int32_t second_pattern,
                                const char* first_letters, const char* second_letters);
PureLineEstimate PLMPairEightWay(int population_type, int64_t num_individuals,
                                 int32_t first_pattern, int32_t second_pattern,
                                 const char* first_letters, const char* second_letters);

}  // namespace gae
