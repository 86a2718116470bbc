// The parameter section that may close a binning input file, after the anchors. The library's
// check does not read it; the binning command does, for its defaults.
#pragma once

#include <cstdint>

#include "input/list_reader.h"

namespace gae {

struct BinParameters {
  float missing_rate = 0.05f;    // open range (0.00, 0.10)
  float distortion_p = 0.01f;    // open range (0.0, 0.1)
  int32_t use_anchors = 0;       // non-zero: markers of different anchor groups stay apart
  int32_t missing_agrees = 1;    // non-zero: a missing value agrees with any value
  int32_t method = 1;            // 1 or 2
};

enum class BinParameterRead { kAbsent, kRead, kFailed };

// kAbsent when nothing but remarks follows; kFailed after the line of the first failure, its
// code left in `MessageCode`.
BinParameterRead ReadBinParameters(InputFile& in, BinParameters& out);

}  // namespace gae
