// Random pair stores and matrices for the map-engine tests.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "engine/tour_matrix.h"
#include "twopoint/pair_table.h"

namespace gae::testing {

// Pair records held in memory, laid out as in the pairwise file (two words per pair).
struct MemoryStore {
  int32_t markers = 0;
  std::vector<float> records;
  PairTable Table(int mapping_function = 1) const {
    return PairTable{records.data(), static_cast<int64_t>(records.size() / 2), 2, mapping_function};
  }
  float& First(int32_t i, int32_t j);
  float& Second(int32_t i, int32_t j);
  float First(int32_t i, int32_t j) const { return const_cast<MemoryStore*>(this)->First(i, j); }
  float Second(int32_t i, int32_t j) const { return const_cast<MemoryStore*>(this)->Second(i, j); }
};

// A store whose values come from a small set, so that ties are common: minus-LOD values in
// steps of 0.5 down to -10, frequencies in steps of 0.005 up to 0.5, and NaN in about
// nan_share of the records.
MemoryStore RandomStore(int32_t markers, std::mt19937& rng, double nan_share = 0.0);

// Markers on `chromosomes` chromosomes at random positions: frequencies by Haldane's function of
// the distance (0.5 between chromosomes) and LOD scores that fall with it, so that the groups
// and orders that come out are meaningful.
MemoryStore LinkedStore(int32_t markers, int32_t chromosomes, std::mt19937& rng);

// The matrix as the tests' literal transcriptions use it: packed by pair index, entry k-1 for
// pair index k.
using Packed = std::vector<float>;
float At(const Packed& d, int32_t i, int32_t j);
TourMatrix ToTourMatrix(int32_t n, const Packed& d);

// A random packed matrix of small integers from lo to hi (negative allowed), as floats: ties
// everywhere. With `fractional`, values get a random fraction too.
Packed RandomPacked(int32_t n, std::mt19937& rng, int lo = -20, int hi = 20, bool fractional = false);

// Writes the store as a pairwise file and points the process at it.
void UseStoreFile(const MemoryStore& store, const std::string& path, int mapping_function = 1);

}  // namespace gae::testing
