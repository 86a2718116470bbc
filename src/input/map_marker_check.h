// Files that carry both a map and a marker section must list the marker rows in map order:
// the k-th marker row belongs to the k-th marker of the map, chromosome after chromosome.
#pragma once

#include <string>
#include <vector>

#include "input/chromosome_record.h"

namespace gae {

// Compares the map's marker names with the marker section's, in that order. The first
// difference gives code 2501 and its three lines; returns true with `MessageCode` 0 otherwise.
bool CheckMapAgainstMarkers(const std::vector<ChromosomeRecord>& chromosomes,
                            const std::vector<std::string>& names);

}  // namespace gae
