// The marker table (.mtp) of a pure-line map. Its other reports (.sum, .lod, .rec, .dis) are
// those of a bi-parental map, and come from the same writers.
#pragma once

#include <string>

#include "report/map_layout.h"

namespace gae {

// One row for each linked marker in map order: its number in the input file, its name, the
// lines of each founder letter and missing, the segregation test and the category word.
// `map.marker_class` holds the founder patterns and `map.population_type` is 1 to 4.
std::string PlmMtpReport(const MapLayout& map);

}  // namespace gae
