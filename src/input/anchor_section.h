// The anchor section: for each marker of the marker section, in the same order, its name and
// the linkage group it is anchored to (0: none). The grouping stage may use the anchors to
// keep known markers together.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

// Reads one row per name of `names`. The section is not optional: a file without it fails on
// the first row. Returns true with `MessageCode` 0, or false after the failure's line.
bool ReadAnchorSection(InputFile& in, const std::vector<std::string>& names,
                       std::vector<int32_t>& anchors);

}  // namespace gae
