// Exact two-point estimates of pure lines: the frequency that maximises the likelihood of the
// observed classes of a marker pair over [0, 1/2], and the LOD as the log10 likelihood ratio
// against free recombination. A class that merges founder cells has the summed chance of its
// cells, so partially informative founder patterns get the evidence they carry and no more
// (where a complete-data LOD taken from filled-in counts would claim more).
//
// For 4PRIL the search runs on the inbred line's scale R (unlinked at 1/2 as well) and the
// result is brought back to r per meiosis, r = R / (2 (1 - R)).
#pragma once

#include <array>

#include <cstdint>
#include <vector>

#include "twopoint/pure_line.h"

namespace gae {

// The founder cells of a class by kind: classes of one composition have one chance at every r,
// so the likelihood pools their counts.
struct PureLineComposition {
  std::array<float, 4> kinds{};
  int cells = 0;
  bool operator==(const PureLineComposition&) const = default;
};
struct PureLineCompositions {
  int count = 0;
  std::array<PureLineComposition, kMaxFounders * kMaxFounders> of{};
  std::array<uint8_t, kMaxFounders * kMaxFounders> of_class{};  // each class's composition
};
PureLineCompositions CompositionsOf(const PureLinePairClasses& classes);

// ln of each composition's chance (the summed chances of its founder cells) at every grid
// point, for one population type. The classes of a data set come in a handful of compositions,
// so their logarithms are taken once for all pairs. Built before the pairs run; read-only
// while they run.
class PureLineLogGrid {
 public:
  explicit PureLineLogGrid(int population_type);
  // Adds the rows of the compositions of `classes` that are not held yet.
  void Add(const PureLinePairClasses& classes);
  // The row of a composition; null when it is not held.
  const float* Row(const PureLineComposition& composition) const;

 private:
  int type_;
  std::vector<int32_t> slot_;  // by composition key: index of its row, -1 when not held
  std::vector<float> rows_;
};

// The pair from the count of each class (in the order of `classes`). An uninformative pair
// (no frequency does better than 1/2), an empty one and an unknown type give 0.5 and LOD 0.
// Compositions whose rows `grid` does not hold have them computed on the spot.
PureLineEstimate ExactPureLinePair(int population_type, const PureLinePairClasses& classes,
                                   const float* class_counts, const PureLineLogGrid* grid = nullptr);

// ln L of the classes at r on the scale of the search (R for 4PRIL): sum over the classes of
// count x ln (summed chance of its founder cells); minus infinity when a counted class cannot
// occur.
double PureLineLogLikelihood(int population_type, const PureLinePairClasses& classes,
                             const float* class_counts, double r);

}  // namespace gae
