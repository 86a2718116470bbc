// Two-point estimation in a clonal F1 (AB x CD, both parents heterozygous) and a double cross
// ((AA x BB) x (CC x DD)). Each progeny carries one gamete of each parent and the two parents
// have separate meioses, so a marker pair has a recombination frequency in each parent (rA,
// rB), a combined one for the map (rC), a LOD and a standard error for each, and a linkage
// phase code. The pair of marker categories decides the estimator.
//
// Categories: 1 ABCD (AC, AD, BC, BD), 2 A=B (XC, XD), 3 C=D (AX, BX), 4 AB=CD in the clonal
// F1 or A=CB=D in the double cross, 5 A=DB=C (double cross only); 4 and 5 show AA, AB, BB.
//
// Cells: sixteen 32-bit counts N1..N16, cell = 4 (a - 1) + b. a is the first parent's pattern
// over the two markers (1 A then A, 2 A then B, 3 B then A, 4 B then B), b the second parent's
// (1 C C, 2 C D, 3 D C, 4 D D). Rows 2 and 3 are the first parent's recombinants, columns 2 and
// 3 the second parent's.
//
// Everything is computed in 32-bit floats. The routines are pure and re-entrant, so the pair
// file can run pairs on several threads; the one random draw of the clonal AB=CD pair is
// handed back to the caller, who makes it in record order.
#pragma once

#include <cstdint>

#include "vocabulary/uniform_stream.h"

namespace gae {

// The four progeny classes behind the genotype letters (first parent's allele, second
// parent's): 1 (A, C) for A, E, G, I; 2 (A, D) for B, F, J; 3 (B, C) for C, H; 4 (B, D) for
// D, K. Any other letter is missing: 0. A letter that leaves a parent's allele unknown (XC, AX,
// and the AB=CD types) is placed in one class all the same; the estimator of the category pair
// only reads the cells that the two categories can tell apart.
int ClonalClass(char letter);

// The cell (0-based) of a progeny of class `first_class` at the first marker and
// `second_class` at the second, classes 1..4.
int ClonalCell(int first_class, int second_class);

// The sixteen cells of two markers over `num_individuals` individuals; an individual missing
// at either marker is not counted.
void CDMPairCounts(int64_t num_individuals, const char* first, const char* second, float cells[16]);

struct ClonalPairResult {
  float rec_a = 0.5f, rec_b = 0.5f, rec_c = 0.5f;  // first parent, second parent, combined
  float lod_a = 0.0f, lod_b = 0.0f, lod_c = 0.0f;
  float se_a = -100.0f, se_b = -100.0f, se_c = -100.0f;  // -100: no standard error
  // 1 both parents in coupling (rA, rB at most 0.5), 2 second parent in repulsion, 3 first
  // parent in repulsion, 4 both; 0 for a pair without a common individual. NaN counts as above.
  int32_t phase = 0;
};

// Which of the two clonal AB=CD solutions the data chose and whether a uniform number is owed.
enum class ClonalDraw : int8_t {
  kNone,     // no draw
  kDiscard,  // the second solution was drawn for and lost: the number is taken and unused
  kApply,    // the second solution won: the number decides which parent gets r and 1 - r
};

struct ClonalPairOutcome {
  ClonalPairResult result;
  ClonalDraw draw = ClonalDraw::kNone;
};

// The estimate of a pair whose first marker has the lower (or equal) category; the other way
// round gives no estimate. `clonal` selects the clonal F1 (population type 1) rules, otherwise
// the double cross. A clonal AB=CD pair comes back with its draw pending (see SettleClonalDraw).
ClonalPairOutcome CDMPairDeferred(bool clonal, int first_category, int second_category,
                                  const float cells[16]);

// Completes a pending draw with the uniform number `u`: when the second solution won, u at
// most 0.5 gives the first parent r and the second 1 - r, otherwise the reverse, and the phase
// follows.
void SettleClonalDraw(ClonalPairOutcome& outcome, float u);

// The two entries, with the draw taken from `random` at once.
ClonalPairResult CDMPairClonal(int first_category, int second_category, const float cells[16],
                               UniformStream& random);
ClonalPairResult CDMPairDoubleCross(int first_category, int second_category, const float cells[16]);

// Phase code of two parental frequencies.
int32_t ClonalPhase(float rec_a, float rec_b);

// Newton's iteration on the likelihood of one combined frequency r whose score is
// A / r + B / (r - 1) + C (4 r - 2) / (1 - 2 r + 2 r^2), from `r0`. The first step is kept
// above 0 (0.0001) and, with `clamp_high`, below 1 (0.9999). Later steps stop at 0 below 0 and
// at 0.5 above 1; more than 100 steps, or NaN, give 0.5.
float ClonalIteration(float r0, float a, float b, float c, bool clamp_high);

}  // namespace gae
