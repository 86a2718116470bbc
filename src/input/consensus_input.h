// A consensus-map input file: three header fields (space type, space unit, number of maps)
// and one map section whose chromosomes are the input maps.
#pragma once

#include <cstdint>

#include "input/list_reader.h"
#include "input/map_section.h"

namespace gae {

struct ConsensusInput {
  int32_t space_type = 0;  // 1 intervals, 2 positions
  int32_t space_unit = 0;  // 1 centiMorgans, 2 Morgan
  int32_t num_maps = 0;
  MapSection maps;         // positions in cM; `maps.distinct` numbers the distinct markers
};

// Reads the whole file. True with `MessageCode` 0, or false after the first failure's line;
// the header values that passed before a failure are kept
// (0 for the others).
bool ReadConsensusInput(InputFile& in, ConsensusInput& out);

}  // namespace gae
