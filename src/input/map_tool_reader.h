// The whole input file of a map tool: header, marker section and anchor section.
#pragma once

#include <cstdint>
#include <vector>

#include "input/list_reader.h"
#include "input/marker_section.h"

namespace gae {

struct MapToolInput {
  int32_t population_type = 0, mapping_function = 0, space_type = 0, num_markers = 0, population_size = 0;
  MarkerSection markers;
  std::vector<int32_t> anchors;
};

// Header, marker section and anchor section of a MAP (104), CDM (20) or PLM (30) input file.
// Returns with MessageCode() 0, or the code of the first failure with its line printed.
void ReadMapToolInput(InputFile& in, int tool_code, MapToolInput& out);

}  // namespace gae
