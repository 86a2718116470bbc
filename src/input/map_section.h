// The chromosome and linkage-map section shared by every tool that works on an existing map.
//
// Block 1 lists the chromosomes, one row each: name and number of markers. Block 2 has one row
// per marker, chromosome after chromosome: marker name, the chromosome it belongs to (its name
// or its number) and either its position or the length of the interval before it. Positions
// are kept in centiMorgans whatever unit the file uses.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/chromosome_record.h"
#include "input/distinct_markers.h"
#include "input/list_reader.h"

namespace gae {

struct MapSection {
  std::vector<std::string> chromosome_names;  // 19 characters, blank padded
  std::vector<ChromosomeRecord> chromosomes;  // in the order of the file
  int32_t total_markers = 0;                  // sum of the chromosomes' marker counts
  DistinctMarkers distinct;                   // the consensus tool's table (tool code 105 only)
};

// Reads both blocks and checks them. Tool code 105, the consensus tool, expects the same marker
// on several maps: it skips the duplicate-name checks and builds the distinct-marker table
// instead. Returns true with `MessageCode` 0, or false after the first failure's line.
bool ReadMapSection(InputFile& in, int tool_code, int32_t num_chs, int32_t space_type,
                    int32_t space_unit, MapSection& out);

}  // namespace gae
