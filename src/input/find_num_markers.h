#pragma once

#include <string_view>

namespace gae {

// The marker-count entry shared by the map, SNP and binning tools: opens the tool's log, reads
// PopulationType, MappingFunction, SpaceType and NumMarkers, and ends with the 1102 or 1101
// line of `dll_name`. The one integer behind `num_markers` is the read's scratch: each field
// passes through it in turn and the marker count is what stays.
void FindNumMarkersEntry(std::string_view tool, std::string_view dll_name, int tool_code,
                         int path_len, const char* path, int* num_markers, int* status);

}  // namespace gae
