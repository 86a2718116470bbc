// Exact two-point estimates of a clonal F1 or a double cross. Each progeny's class at a marker
// pair comes from four hidden alleles: the first parent's at both markers (recombinant with
// chance rA) and the second parent's (rB). A category that cannot tell some alleles apart
// merges hidden combinations into one observed class, so every cell of the table has the chance
// (k00 (1 - a)(1 - b) + k01 (1 - a) b + k10 a (1 - b) + k11 a b) / 4, the k counting the hidden
// combinations of each kind behind it. From that one model:
//   - rA, rB: the joint maximum of the likelihood over both frequencies in [0, 1], a value
//     above 1/2 being that parent's repulsion phase; a parent whose meioses the pair cannot see
//     keeps 0.5 and LOD 0. LODA is the log10 likelihood ratio of the maximum against the best
//     with rA = 1/2, LODB likewise.
//   - rC: the one frequency shared by both parents that maximises the likelihood over [0, 1/2]
//     and the four phase combinations; LODC its log10 likelihood ratio against 1/2. When the two
//     markers show both parents' alleles alike (categories 4 and 5), the parents cannot be told
//     apart, and rA, rB are this shared frequency in its phases (the first parent in coupling
//     when the phases differ: no random draw).
// The phase code and the record layout are those of the store.
#pragma once

#include <array>
#include <cstdint>

#include "twopoint/clonal_two_point.h"

namespace gae {

// The hidden combinations behind each of the sixteen cells (cell = 4 (a - 1) + b as counted),
// by kind 2 recA + recB. `known` is false for categories the population does not have or that
// come the wrong way round (the lower category first).
struct ClonalCellModel {
  bool known = false;
  std::array<std::array<uint8_t, 4>, 16> k{};
};
ClonalCellModel BuildClonalCellModel(bool clonal, int first_category, int second_category);

// The estimate of a pair whose first marker has the lower (or equal) category. An empty table
// and an unknown category pair give the unlinked values (0.5, LOD 0, phase 0 for the empty one).
// Standard errors are not estimated (-100).
ClonalPairResult ExactClonalPair(bool clonal, int first_category, int second_category,
                                 const float cells[16]);

// ln L of the table at (a, b), up to a constant: sum of N ln(k00 a'b' + ... ), minus infinity
// when a counted class cannot occur; cells outside the model are left out.
double ClonalLogLikelihood(const ClonalCellModel& model, const float cells[16], double a, double b);

}  // namespace gae
