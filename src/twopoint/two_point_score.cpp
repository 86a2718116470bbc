// LOD score and standard error of an estimate.
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <vector>

#include "twopoint/two_point.h"
#include "twopoint/two_point_model.h"

namespace gae {

namespace {

// Sum of N(i) log10 P(i) given the logarithms.
float WeightedSum(const float cells[9], const float probs[9], const float logs[9]) {
  float sum = 0.0f;
  for (int k = 0; k < 9; ++k)
    if (probs[k] > 0.0f) sum += cells[k] * logs[k];
  return sum;
}

// log10 of each positive probability, taken once for each distinct value: a model's classes
// repeat a few values (an F2 has four among nine cells), and the logarithm is the dearest
// step of scoring a pair.
void Log10OfClasses(const float probs[9], float logs[9]) {
  uint32_t seen[9];
  int distinct[9];
  int count = 0;
  for (int k = 0; k < 9; ++k) {
    if (!(probs[k] > 0.0f)) continue;
    const uint32_t bits = std::bit_cast<uint32_t>(probs[k]);
    int q = 0;
    while (q < count && seen[q] != bits) ++q;
    if (q == count) {
      seen[count] = bits;
      distinct[count++] = k;
      logs[k] = std::log10(probs[k]);
    } else {
      logs[k] = logs[distinct[q]];
    }
  }
}

// The classes at r = 1/2 and their logarithms depend on the type and the code alone: taken
// once for the codes the estimators know, for every type.
struct HalfTerms {
  float probs[9] = {};
  float logs[9] = {};
};
constexpr int kKnownCodes[] = {11, 112, 110, 1212, 1210, 1010, 121, 101, 1012};

const HalfTerms* HalfTermsFor(int population_type, int pair_code) {
  static const std::vector<HalfTerms> table = [] {
    std::vector<HalfTerms> t(21 * std::size(kKnownCodes));
    for (int type = 1; type <= 20; ++type) {
      for (std::size_t c = 0; c < std::size(kKnownCodes); ++c) {
        HalfTerms& h = t[static_cast<std::size_t>(type) * std::size(kKnownCodes) + c];
        TwoPointModel<float>(type, kKnownCodes[c], h.probs, 0.5f, h.probs, nullptr, nullptr);
        Log10OfClasses(h.probs, h.logs);
      }
    }
    return t;
  }();
  if (population_type < 1 || population_type > 20) return nullptr;
  for (std::size_t c = 0; c < std::size(kKnownCodes); ++c)
    if (kKnownCodes[c] == pair_code)
      return &table[static_cast<std::size_t>(population_type) * std::size(kKnownCodes) + c];
  return nullptr;
}

}  // namespace

float TwoPointLogLik(const float cells[9], const float probs[9]) {
  float logs[9];
  Log10OfClasses(probs, logs);
  return WeightedSum(cells, probs, logs);
}

void TwoPointScore(int population_type, int pair_code, const float cells[9], float rec_freq,
                   float& lod, float* std_err) {
  float at_r[9] = {};
  float at_half[9] = {};
  float h = 0.0f;
  TwoPointModel<float>(population_type, pair_code, cells, rec_freq, at_r, nullptr,
                       std_err != nullptr ? &h : nullptr);
  float at_half_log = 0.0f;
  if (const HalfTerms* half = HalfTermsFor(population_type, pair_code)) {
    at_half_log = WeightedSum(cells, half->probs, half->logs);
  } else {
    TwoPointModel<float>(population_type, pair_code, cells, 0.5f, at_half, nullptr, nullptr);
    at_half_log = TwoPointLogLik(cells, at_half);
  }
  lod = TwoPointLogLik(cells, at_r) - at_half_log;
  if (std_err == nullptr) return;
  // The inverse of the observed information; a NaN or non-positive variance gives 0.
  const float variance = -1 / h;
  *std_err = variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

void TwoPointScore(int population_type, int pair_code, const float cells[9], float rec_freq,
                   float& lod, float& std_err) {
  TwoPointScore(population_type, pair_code, cells, rec_freq, lod, &std_err);
}

}  // namespace gae
