#include "twopoint/exact_two_point.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "twopoint/exact_phases.h"
#include "twopoint/exact_search.h"
#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

constexpr int kGridPoints = kExactGridPoints;
// ln of a class that cannot occur: far below any real sum, still finite so that a class with
// no individuals (count 0) adds nothing.
constexpr float kImpossible = -1e30f;

// ln P of each class at every grid point, for one type and layout: the grid search then costs
// multiplications only.
struct LogGrid {
  std::array<std::array<float, kGridPoints>, 9> log_p{};
  std::array<double, 9> log_half{};  // at r = 1/2 in full precision, for the LOD's baseline
  unsigned used = 0;
};

constexpr int kLayouts[] = {11, 112, 110, 1212, 1210, 1010};

int LayoutIndex(int pair_code) {
  const int canonical = CanonicalPairCode(pair_code);
  for (int k = 0; k < 6; ++k)
    if (kLayouts[k] == canonical) return k;
  return -1;
}

const LogGrid* GridFor(int population_type, int pair_code) {
  static const std::vector<LogGrid> grids = [] {
    std::vector<LogGrid> all(21 * 6);
    const float none[9] = {};
    for (int type = 1; type <= 20; ++type) {
      for (int layout = 0; layout < 6; ++layout) {
        LogGrid& grid = all[static_cast<std::size_t>(type * 6 + layout)];
        for (int j = 0; j < kGridPoints; ++j) {
          double p[9] = {};
          TwoPointModel<double>(type, kLayouts[layout], none, ExactGridPoint(j), p, nullptr, nullptr);
          for (int k = 0; k < 9; ++k) {
            grid.log_p[k][j] = p[k] > 0.0 ? static_cast<float>(std::log(p[k])) : kImpossible;
            if (p[k] > 0.0) grid.used |= 1u << k;
            if (j == kExactGridSteps && p[k] > 0.0) grid.log_half[k] = std::log(p[k]);
          }
        }
      }
    }
    return all;  // a layout the type does not know keeps no class: used stays 0
  }();
  const int layout = LayoutIndex(pair_code);
  if (population_type < 1 || population_type > 20 || layout < 0) return nullptr;
  const LogGrid& grid = grids[static_cast<std::size_t>(population_type * 6 + layout)];
  return grid.used == 0 ? nullptr : &grid;
}

// One phase read class by class.
struct CellPhase {
  int type, code;
  const float* cells;
  const LogGrid* grid;
  ExactGrid Grid() const {
    ExactGrid sum{};
    for (int k = 0; k < 9; ++k) {
      if (cells[k] == 0.0f || !((grid->used >> k) & 1u)) continue;
      const float n = cells[k];
      for (int j = 0; j < kGridPoints; ++j) sum[j] += n * grid->log_p[k][j];
    }
    return sum;
  }
  void Derivatives(double r, double& g, double& h) const { TwoPointModel<double>(type, code, cells, r, nullptr, &g, &h); }
  double LogLik(double r) const { return TwoPointLogLikelihood(type, code, cells, r); }
  double HalfLogLik() const {
    double sum = 0.0;
    for (int k = 0; k < 9; ++k)
      if (cells[k] != 0.0f && ((grid->used >> k) & 1u)) sum += cells[k] * grid->log_half[k];
    return sum;
  }
};

}  // namespace

double TwoPointLogLikelihood(int population_type, int pair_code, const float cells[9], double r) {
  const LogGrid* grid = GridFor(population_type, pair_code);
  if (grid == nullptr) return std::numeric_limits<double>::quiet_NaN();
  double p[9] = {};
  TwoPointModel<double>(population_type, pair_code, cells, r, p, nullptr, nullptr);
  double sum = 0.0;
  for (int k = 0; k < 9; ++k) {
    // A count outside the code's classes is no class of this model: it is left out.
    if (cells[k] == 0.0f || !((grid->used >> k) & 1u)) continue;
    if (!(p[k] > 0.0)) return -std::numeric_limits<double>::infinity();
    sum += cells[k] * std::log(p[k]);
  }
  return sum;
}

ExactTwoPoint ExactTwoPointEstimate(int population_type, int pair_code, const float cells[9]) {
  float swapped[9];
  const int second_code = TwoPointExchangedPhase(population_type, pair_code, cells, swapped);
  return ExactTwoPointOfPhases(population_type, pair_code, cells, second_code, swapped);
}

ExactTwoPoint ExactTwoPointOfPhases(int population_type, int pair_code, const float cells[9], int second_code,
                                    const float swapped[9]) {
  ExactTwoPoint out;
  float n = 0.0f;
  for (int k = 0; k < 9; ++k) n += cells[k];
  if (!(n > 0.0f)) return out;
  const LogGrid* first = GridFor(population_type, pair_code);
  const LogGrid* second = second_code != 0 ? GridFor(population_type, second_code) : nullptr;
  if (first == nullptr || second == nullptr) {
    out.rec_freq = std::numeric_limits<float>::quiet_NaN();
    return out;
  }
  return ExactOfPhases(CellPhase{population_type, pair_code, cells, first},
                       CellPhase{population_type, second_code, swapped, second}, n);
}

}  // namespace gae
