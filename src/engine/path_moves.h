// Local moves on an open path (a marker order) restricted to each city's nearest neighbours:
// a 2-opt move reverses a stretch so that a city meets a near neighbour; an or-move lifts a
// stretch of up to 32 cities and puts it, either way round, beside a near neighbour of
// its first or last city; and an end of the path may turn round against any city. The first move that shortens the path is taken, so one sweep costs
// n k moves tried and each move taken at most the path's length.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/tour_matrix.h"

namespace gae {

// The summed value of consecutive cities of `order` (local numbers).
double PathLength(const TourMatrix& d, const std::vector<int32_t>& order);

// Improves `order` in place until no move among the `near` lists (NearestCities, k per city)
// shortens it by more than a rounding's worth; returns the number of moves taken.
int64_t ImprovePath(const TourMatrix& d, const std::vector<int32_t>& near, int32_t k, std::vector<int32_t>& order);

}  // namespace gae
