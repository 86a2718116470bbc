#include "twopoint/exact_pure_line.h"

#include <array>
#include <cmath>
#include <limits>

#include "twopoint/exact_search.h"

namespace gae {

namespace {

constexpr float kImpossible = -1e30f;
constexpr int kKeyCount = 9 * 9 * 17 * 33;  // kinds of at most 8, 8, 16 and 32 cells

int KeyOf(const PureLineComposition& c) {
  const int k0 = static_cast<int>(c.kinds[0]), k1 = static_cast<int>(c.kinds[1]);
  const int k2 = static_cast<int>(c.kinds[2]), k3 = static_cast<int>(c.kinds[3]);
  return k0 + 9 * (k1 + 9 * (k2 + 17 * k3));
}

// The chance of a composition with its derivatives.
PureLineKindTerm<double> CompositionTerm(int type, const PureLineComposition& c, double r) {
  const std::array<PureLineKindTerm<double>, 4> t = PureLineKindTerms<double>(type, r);
  PureLineKindTerm<double> sum;
  for (int k = 0; k < 4; ++k) {
    sum.p += c.kinds[k] * t[k].p;
    sum.d1 += c.kinds[k] * t[k].d1;
    sum.d2 += c.kinds[k] * t[k].d2;
  }
  return sum;
}

void FillRow(int type, const PureLineComposition& c, float* row) {
  for (int j = 0; j < kExactGridPoints; ++j) {
    const double p = CompositionTerm(type, c, ExactGridPoint(j)).p;
    row[j] = p > 0.0 ? static_cast<float>(std::log(p)) : kImpossible;
  }
}

// The counts pooled by composition: classes of one composition have one chance.
std::array<float, kMaxFounders * kMaxFounders> Pooled(const PureLinePairClasses& classes,
                                                      const PureLineCompositions& comps, const float* class_counts) {
  std::array<float, kMaxFounders * kMaxFounders> pooled{};
  for (int c = 0; c < classes.num_classes; ++c) pooled[comps.of_class[c]] += class_counts[c];
  return pooled;
}

double PooledLogLik(int type, const PureLineCompositions& comps, const float* pooled, double r) {
  double sum = 0.0;
  for (int s = 0; s < comps.count; ++s) {
    if (pooled[s] == 0.0f) continue;
    const double p = CompositionTerm(type, comps.of[s], r).p;
    if (!(p > 0.0)) return -std::numeric_limits<double>::infinity();
    sum += pooled[s] * std::log(p);
  }
  return sum;
}

}  // namespace

PureLineCompositions CompositionsOf(const PureLinePairClasses& classes) {
  PureLineCompositions comps;
  for (int c = 0; c < classes.num_classes; ++c) {
    const PureLineClass& cls = classes.classes[c];
    PureLineComposition mine;
    mine.cells = cls.cells;
    for (int k = 0; k < cls.cells; ++k) mine.kinds[classes.cell_kind[classes.class_cells[cls.first + k]]] += 1.0f;
    int s = 0;
    while (s < comps.count && !(comps.of[s] == mine)) ++s;
    if (s == comps.count) comps.of[comps.count++] = mine;
    comps.of_class[c] = static_cast<uint8_t>(s);
  }
  return comps;
}

PureLineLogGrid::PureLineLogGrid(int population_type)
    : type_(population_type), slot_(kKeyCount, -1) {}

void PureLineLogGrid::Add(const PureLinePairClasses& classes) {
  const PureLineCompositions comps = CompositionsOf(classes);
  for (int s = 0; s < comps.count; ++s) {
    const int key = KeyOf(comps.of[s]);
    if (slot_[key] >= 0) continue;
    slot_[key] = static_cast<int32_t>(rows_.size() / kExactGridPoints);
    rows_.resize(rows_.size() + kExactGridPoints);
    FillRow(type_, comps.of[s], rows_.data() + rows_.size() - kExactGridPoints);
  }
}

const float* PureLineLogGrid::Row(const PureLineComposition& composition) const {
  const int slot = slot_[KeyOf(composition)];
  return slot < 0 ? nullptr : rows_.data() + static_cast<std::size_t>(slot) * kExactGridPoints;
}

double PureLineLogLikelihood(int population_type, const PureLinePairClasses& classes,
                             const float* class_counts, double r) {
  const PureLineCompositions comps = CompositionsOf(classes);
  const auto pooled = Pooled(classes, comps, class_counts);
  return PooledLogLik(population_type, comps, pooled.data(), r);
}

PureLineEstimate ExactPureLinePair(int type, const PureLinePairClasses& classes,
                                   const float* class_counts, const PureLineLogGrid* grid) {
  PureLineEstimate out;
  if (PureLineFounders(type) == 0 || classes.num_classes == 0) return out;
  const PureLineCompositions comps = CompositionsOf(classes);
  const auto pooled = Pooled(classes, comps, class_counts);
  ExactGrid sum{};
  float row_here[kExactGridPoints];
  float total = 0.0f;
  for (int s = 0; s < comps.count; ++s) {
    if (pooled[s] == 0.0f) continue;
    total += pooled[s];
    const float* row = grid != nullptr ? grid->Row(comps.of[s]) : nullptr;
    if (row == nullptr) {
      FillRow(type, comps.of[s], row_here);
      row = row_here;
    }
    for (int j = 0; j < kExactGridPoints; ++j) sum[j] += pooled[s] * row[j];
  }
  if (!(total > 0.0f)) return out;
  const auto derivatives = [&](double r, double& g, double& h) {
    g = h = 0.0;
    for (int s = 0; s < comps.count; ++s) {
      if (pooled[s] == 0.0f) continue;
      const PureLineKindTerm<double> t = CompositionTerm(type, comps.of[s], r);
      const double q = t.d1 / t.p;
      g += pooled[s] * q;
      h += pooled[s] * (t.d2 / t.p - q * q);
    }
  };
  float overall = sum[0];
  for (float v : sum) overall = std::max(overall, v);
  int candidates[2];
  const int count = ExactGridCandidates(sum, overall, ExactGridMargin(total), candidates);
  double best_r = 0.5, best = -std::numeric_limits<double>::infinity();
  for (int c = 0; c < count; ++c) {
    const double r = RefineGridPoint(derivatives, candidates[c]);
    const double l = PooledLogLik(type, comps, pooled.data(), r);
    if (l > best) {
      best = l;
      best_r = r;
    }
  }
  const double at_half = PooledLogLik(type, comps, pooled.data(), 0.5);
  const double gain = best - at_half;
  if (!(gain > 1e-9 * (1.0 + std::fabs(at_half)))) return out;  // nothing beats 1/2
  double r = best_r;
  if (type == 2) r = r / (2.0 * (1.0 - r));  // the inbred line's R back to r per meiosis
  out.rec_freq = static_cast<float>(r);
  out.lod = static_cast<float>(gain / std::log(10.0));
  return out;
}

}  // namespace gae
