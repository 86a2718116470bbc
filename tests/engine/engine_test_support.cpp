#include "engine/engine_test_support.h"

#include <cmath>
#include <limits>

#include "vocabulary/pair_index.h"

namespace gae::testing {

MemoryStore RandomStore(int32_t markers, std::mt19937& rng, double nan_share) {
  MemoryStore store;
  store.markers = markers;
  store.records.resize(static_cast<std::size_t>(2 * PairCount(markers)));
  std::uniform_int_distribution<int> lod(0, 20), freq(0, 100);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (std::size_t k = 0; k < store.records.size(); k += 2) {
    store.records[k] = unit(rng) < nan_share ? nan : -0.5f * static_cast<float>(lod(rng));
    store.records[k + 1] = unit(rng) < nan_share ? nan : 0.005f * static_cast<float>(freq(rng));
  }
  return store;
}

MemoryStore LinkedStore(int32_t markers, int32_t chromosomes, std::mt19937& rng) {
  MemoryStore store;
  store.markers = markers;
  store.records.resize(static_cast<std::size_t>(2 * PairCount(markers)));
  std::uniform_int_distribution<int> which(1, chromosomes);
  std::uniform_real_distribution<double> where(0.0, 100.0);
  std::vector<int> chrom(static_cast<std::size_t>(markers) + 1);
  std::vector<double> pos(static_cast<std::size_t>(markers) + 1);
  for (int32_t i = 1; i <= markers; ++i) {
    chrom[static_cast<std::size_t>(i)] = which(rng);
    pos[static_cast<std::size_t>(i)] = where(rng);
  }
  for (int32_t i = 2; i <= markers; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      float r = 0.5f, lod = 0.0f;
      if (chrom[static_cast<std::size_t>(i)] == chrom[static_cast<std::size_t>(j)]) {
        const double d = std::fabs(pos[static_cast<std::size_t>(i)] - pos[static_cast<std::size_t>(j)]);
        r = static_cast<float>(0.5 * (1.0 - std::exp(-d / 50.0)));
        lod = static_cast<float>(60.0 * std::pow(1.0 - 2.0 * r, 2.0));
      }
      store.First(i, j) = -lod;
      store.Second(i, j) = r;
    }
  }
  return store;
}

float At(const Packed& d, int32_t i, int32_t j) {
  return d[static_cast<std::size_t>(GroupPairIndex(i, j) - 1)];
}

TourMatrix ToTourMatrix(int32_t n, const Packed& d) {
  TourMatrix m(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) m.Set(i, j, At(d, i, j));
  return m;
}

Packed RandomPacked(int32_t n, std::mt19937& rng, int lo, int hi, bool fractional) {
  Packed d(static_cast<std::size_t>(PairCount(n)));
  std::uniform_int_distribution<int> value(lo, hi);
  std::uniform_real_distribution<float> fraction(0.0f, 1.0f);
  for (float& v : d) v = static_cast<float>(value(rng)) + (fractional ? fraction(rng) : 0.0f);
  return d;
}

}  // namespace gae::testing
