// Random pair stores and matrices for the map-engine tests.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "engine/tour_matrix.h"
#include "support/pair_store.h"
#include "twopoint/pair_table.h"

namespace gae::testing {

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

}  // namespace gae::testing
