// The report layout of a map tool: the caller's finished map with the names and genotypes
// read from the input file.
#pragma once

#include "frame/tool_policy.h"
#include "input/map_tool_reader.h"
#include "report/map_layout.h"

namespace gae {

// Takes over the names, categories and genotypes of `data`.
MapLayout LayoutOfFinishedMap(MapToolInput& data, const FinishedMap& map);

}  // namespace gae
