// The exact two-point estimate at the speed of counting, for a whole pair file. Classes of a
// pair table that have one chance at every r (AA-AA and BB-BB in an F2, the two recombinant
// classes of a backcross) add to the likelihood only through their summed count, so the counts
// are pooled by chance first and each chance's logarithm is taken once. Where a population and
// pair code leave two chances alone (backcrosses, doubled haploids, inbred lines), the estimate
// depends only on the individuals typed at both markers n and the recombinant count k, each at
// most the population size: a table by (n, k), filled one n at a time as the pairs need it,
// answers every pair.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "twopoint/exact_two_point.h"

namespace gae {

// How the nine classes of one phase pool: the chance of each class (-1 for a class that cannot
// occur, which the estimate leaves out) and the class that stands for each chance.
struct ClassPooling {
  int pair_code = 0;
  int chances = 0;
  int8_t chance_of[9] = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
  int8_t stands_for[9] = {};
};
ClassPooling PoolingOf(int population_type, int pair_code);

// The table with each chance's summed count in the class that stands for it; the classes that
// cannot occur keep their counts where they are (they still count towards n).
void PooledCells(const ClassPooling& pooling, const float cells[9], float pooled[9]);

class PooledExactPairs {
 public:
  // `max_typed`: the population size, which bounds n. `pair_codes`: the codes the pairs use.
  PooledExactPairs(int population_type, int64_t max_typed, const std::vector<int>& pair_codes);
  ~PooledExactPairs();
  // The estimate of ExactTwoPointEstimate for these cells. Safe from several threads at once.
  ExactTwoPoint Estimate(int pair_code, const float cells[9]) const;
  // Whether the pairs of this code are answered by the (n, k) table.
  bool Tabled(int pair_code) const;

 private:
  struct Code;
  const Code* Find(int pair_code) const;
  ExactTwoPoint Pooled(const Code& code, const float cells[9]) const;
  ExactTwoPoint Tabled(const Code& code, const float cells[9]) const;
  int type_;
  std::vector<std::unique_ptr<Code>> codes_;
};

}  // namespace gae
