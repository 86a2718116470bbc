#include "support/bred_groups.h"

#include <cmath>
#include <numeric>
#include <string>

#include "support/breeder.h"

namespace gae::testing {

namespace {

// The calls a marker of this category can show, the true letter's own call first.
std::string Shown(int type, int32_t category, char truth) {
  if (category == 12) return truth == 'B' ? "BD" : "DB";
  if (category == 10) return truth == 'A' ? "AR" : "RA";
  std::string classes;
  switch (type) {
    case 1: case 9: classes = "AH"; break;
    case 2: case 10: classes = "HB"; break;
    case 7: case 8: case 13: case 14: case 15: case 16: classes = "AHB"; break;
    default: classes = "AB"; break;
  }
  std::string out(1, truth);
  for (char c : classes)
    if (c != truth) out += c;
  return out;
}

}  // namespace

BredGroup BreedGroup(const BredGroupPlan& plan) {
  Breeder breeder = Breeder::AtPositions(plan.positions_cm, plan.seed);
  const int m = static_cast<int>(plan.positions_cm.size());
  const int n = plan.individuals;
  BredGroup g;
  g.categories.assign(m, 1);
  for (int k = 0; k < m; ++k) {
    const double u = breeder.Uniform();
    if (u < plan.dominant_share) g.categories[k] = 12;
    else if (u < plan.dominant_share + plan.recessive_share) g.categories[k] = 10;
  }
  g.types.assign(static_cast<std::size_t>(m) * n, 'X');
  g.wrong.assign(g.types.size(), false);
  g.truth.assign(g.types.size(), 'X');
  for (int i = 0; i < n; ++i) {
    const Plant plant = breeder.Biparental(plan.population_type);
    for (int k = 0; k < m; ++k) {
      const std::size_t at = static_cast<std::size_t>(k) * n + i;
      const char truth = BiparentalLetter(plant, k);
      g.truth[at] = truth;
      const std::string shown = Shown(plan.population_type, g.categories[k], truth);
      if (breeder.Uniform() < plan.missing) continue;
      if (breeder.Uniform() < plan.error_rate && shown.size() > 1) {
        g.types[at] = shown[1 + static_cast<int>(breeder.Uniform() * (shown.size() - 1))];
        g.wrong[at] = true;
      } else {
        g.types[at] = shown[0];
      }
    }
  }
  return g;
}

std::vector<int32_t> TrueOrder(int markers) {
  std::vector<int32_t> order(static_cast<std::size_t>(markers));
  std::iota(order.begin(), order.end(), 0);
  return order;
}

std::vector<double> EvenPositions(int markers, double spacing_cm) {
  std::vector<double> p;
  for (int k = 0; k < markers; ++k) p.push_back(spacing_cm * k);
  return p;
}

double RankCorrelation(const std::vector<int32_t>& order) {
  const double n = static_cast<double>(order.size());
  if (n < 2) return 1.0;
  double d2 = 0;
  for (std::size_t k = 0; k < order.size(); ++k) d2 += std::pow(static_cast<double>(order[k]) - static_cast<double>(k), 2);
  return 1.0 - 6.0 * d2 / (n * (n * n - 1.0));
}

}  // namespace gae::testing
