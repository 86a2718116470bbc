#include "input/find_num_markers.h"

#include "input/header_fields.h"
#include "input/map_section.h"

namespace gae {

void ReadMarkerCountHeader(InputFile& in, int tool_code, int* scratch) {
  const HeaderField fields[] = {HeaderField::kPopulationType, HeaderField::kMappingFunction,
                                HeaderField::kSpaceType, HeaderField::kNumMarkers};
  for (HeaderField field : fields) {
    int32_t value = 0;
    if (!ReadHeaderField(in, field, tool_code, value)) return;
    *scratch = value;
  }
}

void ReadConsensusSizes(InputFile& in, int* space_type, int* space_unit, int* num_chs,
                        int* num_markers) {
  constexpr int kConsensus = 105;
  int32_t values[3] = {0, 0, 0};
  int* results[3] = {space_type, space_unit, num_chs};
  const HeaderField fields[3] = {HeaderField::kSpaceType, HeaderField::kSpaceUnit,
                                 HeaderField::kNumChs};
  for (int f = 0; f < 3; ++f) {
    if (!ReadHeaderField(in, fields[f], kConsensus, values[f])) return;
    *results[f] = values[f];
  }
  MapSection map;
  if (ReadMapSection(in, kConsensus, values[2], values[0], values[1], map)) {
    *num_markers = map.distinct.Count();
  }
}

}  // namespace gae
