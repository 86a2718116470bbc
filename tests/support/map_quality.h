// How a map of simulated markers compares with the truth their names carry: "C03M042" is the
// 42nd marker of chromosome 3, a copy of it "C03M042d".
#pragma once

#include <string>
#include <vector>

namespace gae::testing {

struct MapQuality {
  int linkage_groups = 0;       // groups of two markers or more
  int strays = 0;               // markers outside their chromosome's main group
  double worst_rank_corr = 1.0;  // |Spearman| of position against true index, over groups
  double shortest = 0.0, longest = 0.0;  // group length over the true length
};

// Spearman's correlation with tied values given their mean rank.
double RankCorrelation(const std::vector<double>& x, const std::vector<double>& y);

// `names` and `positions_cm` by group in map order; `true_length_cm` of every chromosome.
MapQuality JudgeMap(const std::vector<std::vector<std::string>>& names,
                    const std::vector<std::vector<double>>& positions_cm, double true_length_cm);

}  // namespace gae::testing
