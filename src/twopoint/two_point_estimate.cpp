// The estimator frame: one phase, both phases, and the guard the pair store relies on.
#include <cmath>
#include <limits>

#include "vocabulary/population.h"
#include "twopoint/closed_forms.h"
#include "twopoint/two_point.h"

namespace gae {

namespace {

float CellSum(const float cells[9]) {
  float n = 0.0f;
  for (int k = 0; k < 9; ++k) n += cells[k];
  return n;
}

// Exchanging the alleles of one marker reorders the table. In a backcross only the two classes
// the backcross shows can change places, so rows 1 and 2 (to P1) or 2 and 3 (to P2) swap;
// elsewhere A and B swap, rows 1 and 3. A dominant marker read the other way round looks
// recessive, so codes with one change both the layout and the code.
struct PhaseExchange {
  const int* perm;  // 1-based: N'(i) = N(perm(i))
  int pair_code;
};

constexpr int kSwapRows12[9] = {4, 5, 6, 1, 2, 3, 7, 8, 9};
constexpr int kSwapRows23[9] = {1, 2, 3, 7, 8, 9, 4, 5, 6};
constexpr int kSwapRows13[9] = {7, 8, 9, 4, 5, 6, 1, 2, 3};
constexpr int kSwapColumns13[9] = {3, 2, 1, 6, 5, 4, 9, 8, 7};

// Null `perm` for a type that is not a population type: there is no second phase.
PhaseExchange ExchangeFor(int population_type, int pair_code) {
  if (BackcrossToP1(population_type)) return {kSwapRows12, pair_code};
  if (BackcrossToP2(population_type)) return {kSwapRows23, pair_code};
  if (SelfedGeneration(population_type)) {
    switch (pair_code) {
      case 1212: return {kSwapColumns13, 1210};
      case 1210:
      case 1012: return {kSwapColumns13, 1212};
      case 1010: return {kSwapRows13, 1210};
      default: return {kSwapRows13, pair_code};
    }
  }
  if (population_type >= 1 && population_type <= 20) return {kSwapRows13, pair_code};
  return {nullptr, pair_code};
}

}  // namespace

int TwoPointExchangedPhase(int population_type, int pair_code, const float cells[9],
                           float exchanged[9]) {
  const PhaseExchange exchange = ExchangeFor(population_type, pair_code);
  if (exchange.perm == nullptr) return 0;
  for (int k = 0; k < 9; ++k) exchanged[k] = cells[exchange.perm[k] - 1];
  return exchange.pair_code;
}

namespace {

// The estimators with the standard error optional: the pair store keeps none, and leaving it
// out spares the second derivatives of the score.
void OnePhase(int population_type, int pair_code, const float cells[9], float& rec_freq,
              float& lod, float* std_err) {
  const float n = CellSum(cells);
  if (!TwoPointClosedForm(population_type, pair_code, cells, n, rec_freq)) {
    rec_freq = SelfedGeneration(population_type) ? TwoPointNewton(population_type, pair_code, cells, n)
                                         : std::numeric_limits<float>::quiet_NaN();
  }
  TwoPointScore(population_type, pair_code, cells, rec_freq, lod, std_err);
}

void Estimate(int population_type, int pair_code, const float cells[9], float& rec_freq,
              float& lod, float* std_err) {
  OnePhase(population_type, pair_code, cells, rec_freq, lod, std_err);
  float swapped[9];
  const int second_code = TwoPointExchangedPhase(population_type, pair_code, cells, swapped);
  if (second_code == 0) return;
  float r2 = 0.0f, lod2 = 0.0f, se2 = 0.0f;
  OnePhase(population_type, second_code, swapped, r2, lod2, std_err != nullptr ? &se2 : nullptr);
  if (r2 < rec_freq) {  // false when either is NaN: the first phase stands
    rec_freq = 1 - r2;
    lod = lod2;
    if (std_err != nullptr) *std_err = se2;
  }
}

}  // namespace

void TwoPointOnePhase(int population_type, int pair_code, const float cells[9], float& rec_freq,
                      float& lod, float& std_err) {
  OnePhase(population_type, pair_code, cells, rec_freq, lod, &std_err);
}

void TwoPointEstimate(int population_type, int pair_code, const float cells[9], float& rec_freq,
                      float& lod, float& std_err) {
  Estimate(population_type, pair_code, cells, rec_freq, lod, &std_err);
}

bool UnlinkedWhenNotANumber(float& rec_freq, float& lod) {
  if (!std::isnan(rec_freq) && !std::isnan(lod)) return false;
  rec_freq = 0.5f;
  lod = 0.0f;
  return true;
}

void TwoPointGuarded(int population_type, int pair_code, const float cells[9], float& rec_freq,
                     float& lod) {
  if (CellSum(cells) <= 0.0f) {  // no individual typed at both markers; a NaN sum goes on
    rec_freq = 0.5f;
    lod = 0.0f;
    return;
  }
  Estimate(population_type, pair_code, cells, rec_freq, lod, nullptr);
  if (lod < 0.0f) lod = 0.0f;  // false for NaN: the store's writer sees it and counts it
}

}  // namespace gae
