#include "twopoint/pooled_exact_pairs.h"

#include <algorithm>
#include <cmath>

#include "twopoint/chance_curves.h"
#include "twopoint/exact_phases.h"
#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// Points at which two classes must agree to share a chance: the models are low-degree
// rational functions of r, so agreement at this many points is identity.
constexpr double kProbe[] = {0.013, 0.071, 0.137, 0.226, 0.293, 0.377, 0.449};
constexpr int kProbes = 7;

bool SameChance(const double (&a)[kProbes], const double (&b)[kProbes]) {
  for (int t = 0; t < kProbes; ++t)
    if (std::fabs(a[t] - b[t]) > 1e-13 * std::max(std::fabs(a[t]), std::fabs(b[t]))) return false;
  return true;
}

// Where the single unit of `cells` (one class) lies.
int UnitClass(const float cells[9]) {
  for (int k = 0; k < 9; ++k)
    if (cells[k] != 0.0f) return k;
  return -1;
}

}  // namespace

ClassPooling PoolingOf(int population_type, int pair_code) {
  ClassPooling pooling;
  pooling.pair_code = pair_code;
  double curve[9][kProbes] = {};
  const float none[9] = {};
  for (int t = 0; t < kProbes; ++t) {
    double p[9] = {};
    TwoPointModel<double>(population_type, pair_code, none, kProbe[t], p, nullptr, nullptr);
    for (int k = 0; k < 9; ++k) curve[k][t] = p[k];
  }
  for (int k = 0; k < 9; ++k) {
    bool occurs = false;
    for (int t = 0; t < kProbes; ++t) occurs = occurs || curve[k][t] > 0.0;
    if (!occurs) continue;
    int c = 0;
    while (c < pooling.chances && !SameChance(curve[pooling.stands_for[c]], curve[k])) ++c;
    if (c == pooling.chances) pooling.stands_for[pooling.chances++] = static_cast<int8_t>(k);
    pooling.chance_of[k] = static_cast<int8_t>(c);
  }
  return pooling;
}

void PooledCells(const ClassPooling& pooling, const float cells[9], float pooled[9]) {
  for (int k = 0; k < 9; ++k) pooled[k] = pooling.chance_of[k] < 0 ? cells[k] : 0.0f;
  for (int k = 0; k < 9; ++k)
    if (pooling.chance_of[k] >= 0) pooled[pooling.stands_for[pooling.chance_of[k]]] += cells[k];
}

struct PooledExactPairs::Code {
  ClassPooling first, second;
  int second_code = 0;
  ChanceCurves curves[2];  // of the two phases
  // The (n, k) table: k counts the first phase's chance 1; rows filled once, when first needed.
  bool tabled = false;
  int64_t max_n = 0;
  mutable std::vector<std::vector<ExactTwoPoint>> rows;
  mutable std::unique_ptr<std::once_flag[]> filled;
};

namespace {

// Two chances in each phase, every class that can occur in one phase occurring in the other,
// and each chance of the first phase becoming one chance of the second: then n and k decide.
bool DecidedByCount(int type, const ClassPooling& first, const ClassPooling& second) {
  if (first.chances != 2 || second.chances != 2) return false;
  int becomes[2] = {-1, -1};
  for (int k = 0; k < 9; ++k) {
    float unit[9] = {}, swapped[9];
    unit[k] = 1.0f;
    TwoPointExchangedPhase(type, first.pair_code, unit, swapped);
    const int there = UnitClass(swapped);
    if (there < 0) return false;
    const int from = first.chance_of[k], to = second.chance_of[there];
    if ((from < 0) != (to < 0)) return false;
    if (from < 0) continue;
    if (becomes[from] >= 0 && becomes[from] != to) return false;
    becomes[from] = to;
  }
  return becomes[0] >= 0 && becomes[1] >= 0 && becomes[0] != becomes[1];
}

}  // namespace

PooledExactPairs::PooledExactPairs(int population_type, int64_t max_typed, const std::vector<int>& pair_codes)
    : type_(population_type) {
  for (const int pair_code : pair_codes) {
    if (Find(pair_code) != nullptr) continue;
    float none[9] = {}, swapped[9];
    const int second_code = TwoPointExchangedPhase(population_type, pair_code, none, swapped);
    auto code = std::make_unique<Code>();
    code->first = PoolingOf(population_type, pair_code);
    code->second_code = second_code;
    if (second_code != 0) code->second = PoolingOf(population_type, second_code);
    if (second_code != 0 && code->first.chances > 0 && code->second.chances > 0) {
      code->curves[0] = CurvesOf(population_type, code->first);
      code->curves[1] = CurvesOf(population_type, code->second);
    }
    code->tabled = second_code != 0 && max_typed >= 0 && DecidedByCount(population_type, code->first, code->second);
    if (code->tabled) {
      code->max_n = max_typed;
      code->rows.resize(static_cast<std::size_t>(max_typed) + 1);
      code->filled = std::make_unique<std::once_flag[]>(static_cast<std::size_t>(max_typed) + 1);
    }
    codes_.push_back(std::move(code));
  }
}

PooledExactPairs::~PooledExactPairs() = default;

const PooledExactPairs::Code* PooledExactPairs::Find(int pair_code) const {
  for (const auto& code : codes_)
    if (code->first.pair_code == pair_code) return code.get();
  return nullptr;
}

bool PooledExactPairs::Tabled(int pair_code) const {
  const Code* code = Find(pair_code);
  return code != nullptr && code->tabled;
}

namespace {

ChancePhase PhaseOf(const ChanceCurves& curves, const ClassPooling& pooling, const float cells[9]) {
  ChancePhase phase{&curves, {}};
  for (int k = 0; k < 9; ++k)
    if (pooling.chance_of[k] >= 0) phase.counts[pooling.chance_of[k]] += cells[k];
  return phase;
}

}  // namespace

ExactTwoPoint PooledExactPairs::Pooled(const Code& code, const float cells[9]) const {
  if (code.second_code == 0) return ExactTwoPointEstimate(type_, code.first.pair_code, cells);
  float swapped[9], first[9], second[9];
  TwoPointExchangedPhase(type_, code.first.pair_code, cells, swapped);
  if (code.curves[0].polynomial && code.curves[1].polynomial) {
    float n = 0.0f;
    for (int k = 0; k < 9; ++k) n += cells[k];
    if (!(n > 0.0f)) return {};
    return ExactOfPhases(PhaseOf(code.curves[0], code.first, cells), PhaseOf(code.curves[1], code.second, swapped), n);
  }
  PooledCells(code.first, cells, first);
  PooledCells(code.second, swapped, second);
  return ExactTwoPointOfPhases(type_, code.first.pair_code, first, code.second_code, second);
}

ExactTwoPoint PooledExactPairs::Tabled(const Code& code, const float cells[9]) const {
  float by_chance[2] = {0.0f, 0.0f};
  for (int k = 0; k < 9; ++k) {
    if (code.first.chance_of[k] < 0) {
      if (cells[k] != 0.0f) return Pooled(code, cells);  // a class that cannot occur was seen
      continue;
    }
    by_chance[code.first.chance_of[k]] += cells[k];
  }
  const float n = by_chance[0] + by_chance[1];
  if (!(n >= 0.0f && n <= static_cast<float>(code.max_n)) || n != std::floor(n) || by_chance[1] != std::floor(by_chance[1]))
    return Pooled(code, cells);
  const std::size_t row = static_cast<std::size_t>(n);
  std::call_once(code.filled[row], [&] {
    std::vector<ExactTwoPoint>& entries = code.rows[row];
    entries.resize(row + 1);
    for (std::size_t k = 0; k <= row; ++k) {
      float canonical[9] = {};
      canonical[code.first.stands_for[0]] = static_cast<float>(row - k);
      canonical[code.first.stands_for[1]] = static_cast<float>(k);
      entries[k] = Pooled(code, canonical);
    }
  });
  return code.rows[row][static_cast<std::size_t>(by_chance[1])];
}

ExactTwoPoint PooledExactPairs::Estimate(int pair_code, const float cells[9]) const {
  const Code* code = Find(pair_code);
  if (code == nullptr) return ExactTwoPointEstimate(type_, pair_code, cells);
  return code->tabled ? Tabled(*code, cells) : Pooled(*code, cells);
}

}  // namespace gae
