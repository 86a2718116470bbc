#include "input/consensus_input.h"

#include "input/header_fields.h"
#include "input/tool_codes.h"

namespace gae {

bool ReadConsensusInput(InputFile& in, ConsensusInput& out) {
  out = ConsensusInput{};
  const HeaderField fields[3] = {HeaderField::kSpaceType, HeaderField::kSpaceUnit,
                                 HeaderField::kNumChs};
  int32_t* values[3] = {&out.space_type, &out.space_unit, &out.num_maps};
  for (int f = 0; f < 3; ++f) {
    int32_t value = 0;
    if (!ReadHeaderField(in, fields[f], kConsensusToolCode, value)) return false;
    *values[f] = value;
  }
  return ReadMapSection(in, kConsensusToolCode, out.num_maps, out.space_type, out.space_unit, out.maps);
}

}  // namespace gae
