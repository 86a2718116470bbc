#include "support/map_quality.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numeric>

namespace gae::testing {

namespace {

std::vector<double> MeanRanks(const std::vector<double>& x) {
  std::vector<size_t> by(x.size());
  std::iota(by.begin(), by.end(), size_t{0});
  std::sort(by.begin(), by.end(), [&](size_t a, size_t b) { return x[a] < x[b]; });
  std::vector<double> rank(x.size());
  for (size_t i = 0; i < by.size();) {
    size_t j = i;
    while (j + 1 < by.size() && x[by[j + 1]] == x[by[i]]) ++j;
    for (size_t k = i; k <= j; ++k) rank[by[k]] = 0.5 * static_cast<double>(i + j);
    i = j + 1;
  }
  return rank;
}

}  // namespace

double RankCorrelation(const std::vector<double>& x, const std::vector<double>& y) {
  const std::vector<double> rx = MeanRanks(x), ry = MeanRanks(y);
  const double mx = std::accumulate(rx.begin(), rx.end(), 0.0) / static_cast<double>(rx.size());
  const double my = std::accumulate(ry.begin(), ry.end(), 0.0) / static_cast<double>(ry.size());
  double sxy = 0, sxx = 0, syy = 0;
  for (size_t i = 0; i < rx.size(); ++i) {
    sxy += (rx[i] - mx) * (ry[i] - my);
    sxx += (rx[i] - mx) * (rx[i] - mx);
    syy += (ry[i] - my) * (ry[i] - my);
  }
  return sxx > 0 && syy > 0 ? sxy / std::sqrt(sxx * syy) : 1.0;
}

MapQuality JudgeMap(const std::vector<std::vector<std::string>>& names,
                    const std::vector<std::vector<double>>& positions_cm, double true_length_cm) {
  MapQuality q;
  q.shortest = 1e300;
  std::map<int, size_t> main_group_size;  // chromosome -> its largest group's share
  size_t markers = 0;
  for (size_t g = 0; g < names.size(); ++g) {
    markers += names[g].size();
    if (names[g].size() < 2) continue;
    ++q.linkage_groups;
    std::map<int, size_t> count;
    std::vector<double> truth, placed;
    for (size_t k = 0; k < names[g].size(); ++k) {
      const std::string& name = names[g][k];
      ++count[std::atoi(name.c_str() + 1)];
      truth.push_back(std::atof(name.c_str() + name.find('M') + 1));
      placed.push_back(positions_cm[g][k]);
    }
    for (const auto& [chromosome, n] : count) main_group_size[chromosome] = std::max(main_group_size[chromosome], n);
    q.worst_rank_corr = std::min(q.worst_rank_corr, std::abs(RankCorrelation(truth, placed)));
    const double ratio = (positions_cm[g].back() - positions_cm[g].front()) / true_length_cm;
    q.shortest = std::min(q.shortest, ratio);
    q.longest = std::max(q.longest, ratio);
  }
  size_t in_main = 0;
  for (const auto& [chromosome, n] : main_group_size) in_main += n;
  q.strays = static_cast<int>(markers - in_main);
  return q;
}

}  // namespace gae::testing
