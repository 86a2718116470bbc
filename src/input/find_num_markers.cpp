#include "input/find_num_markers.h"

#include "input/header_fields.h"
#include "input/consensus_input.h"

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
  ConsensusInput data;
  const bool read = ReadConsensusInput(in, data);
  // A header value stands in the caller's variable once it has passed its check.
  if (data.space_type != 0) *space_type = data.space_type;
  if (data.space_unit != 0) *space_unit = data.space_unit;
  if (data.num_maps != 0) *num_chs = data.num_maps;
  if (read) *num_markers = data.maps.distinct.Count();
}

}  // namespace gae
