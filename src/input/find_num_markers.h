// The sizes a front end must know before it allocates: the marker-count reads of the map, SNP
// and binning tools, and the consensus tool's map dimensions.
#pragma once

#include <cstdint>

#include "input/list_reader.h"

namespace gae {

// PopulationType, MappingFunction, SpaceType and NumMarkers of the header, under the rules of
// `tool_code`. The one integer behind `scratch` takes each field in turn, so after a success it
// holds the marker count and after a failure the last field read. `MessageCode` 0 or the code.
void ReadMarkerCountHeader(InputFile& in, int tool_code, int* scratch);

// The consensus tool's sizes: SpaceType, SpaceUnit and NumChs of the header, each written as it
// is read, then the number of distinct markers of the whole map section.
void ReadConsensusSizes(InputFile& in, int* space_type, int* space_unit, int* num_chs,
                        int* num_markers);

}  // namespace gae
