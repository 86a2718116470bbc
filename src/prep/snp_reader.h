// The SNP input file: header, the parents' section (the missing-parent method, then one row
// per marker: name and the parents' calls), the progeny section (one row per marker: name and
// the calls of every line) and the anchor section.
#pragma once

#include "input/list_reader.h"
#include "prep/snp_input.h"

namespace gae {

// Reads the whole file with the caller's tool code. Returns with `MessageCode` 0, or the code
// of the first failure with its line printed.
void ReadSnpInput(InputFile& in, int tool_code, SnpInput& out);

// The catalogue codes of the reader.
inline constexpr int kSnpMethodUnreadable = 3121;
inline constexpr int kSnpMethodOutOfRange = 3122;
inline constexpr int kSnpParentUnreadable = 3123;
inline constexpr int kSnpParentIllegal = 3124;
inline constexpr int kSnpProgenyUnreadable = 3125;
inline constexpr int kSnpNamesDiffer = 3126;
inline constexpr int kSnpProgenyIllegal = 3127;

}  // namespace gae
