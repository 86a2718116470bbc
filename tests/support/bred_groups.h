// A linkage group bred with the tests' breeder as the reader hands it over: one-letter calls,
// marker-major, with the letters a population type cannot show folded to missing, some markers
// scored dominant ("A or H" against B) or recessive (A against "H or B"), a share of calls
// missing and a share replaced by a wrong call whose places are kept.
#pragma once

#include <cstdint>
#include <vector>

namespace gae::testing {

struct BredGroupPlan {
  int population_type = 7;
  std::vector<double> positions_cm;
  int individuals = 200;
  double error_rate = 0;
  double missing = 0;
  double dominant_share = 0;   // F2-like types only: markers scored dominant
  double recessive_share = 0;  // and recessive
  uint64_t seed = 1;
};

struct BredGroup {
  std::vector<char> types;          // types[m * individuals + i]
  std::vector<int32_t> categories;  // 1, 12 or 10
  std::vector<bool> wrong;          // the calls made wrong, same layout
  std::vector<char> truth;          // the true letter (A, H, B) of every call
};

BredGroup BreedGroup(const BredGroupPlan& plan);

// The true order of a bred group of `markers`: 0, 1, ..., markers - 1.
std::vector<int32_t> TrueOrder(int markers);

// Positions `spacing` cM apart.
std::vector<double> EvenPositions(int markers, double spacing_cm);

// Spearman's rank correlation of an order with the identity (markers numbered by position).
double RankCorrelation(const std::vector<int32_t>& order);

}  // namespace gae::testing
