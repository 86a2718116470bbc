// The scalar header fields of the input files. There are no keywords in a file: the meaning
// of a value is its place, and each field has a "cannot read" code and an "out of range" code.
#pragma once

#include <cstddef>
#include <cstdint>

#include "input/list_reader.h"

namespace gae {

enum class HeaderField {
  kIndicator,        // 1 mapping, 2 simulation
  kPopulationType,   // range set by the tool code
  kMappingFunction,  // 1 Kosambi, 2 Haldane, 3 Morgan
  kSpaceType,        // 1 intervals, 2 positions
  kSpaceUnit,        // 1 centiMorgans, 2 Morgan
  kNumChs,
  kNumMarkers,       // followed by the test that the pairwise store of that size can be held
  kPopulationSize,
  kNumTraits,        // the only count that may be 0
  kNumEnvs,
  kNumReps,
  kNumFamilies,
};

// Skips remarks, reads one integer and checks it. On failure `MessageCode` holds the field's
// code, its line has been printed, and the result is false.
bool ReadHeaderField(InputFile& in, HeaderField field, int tool_code, int32_t& value);

// The number of four-byte cells of the pairwise store of n markers, n(n-1)/2, computed in
// 32-bit integers like the store's record numbers, wrapping on overflow.
int32_t PairCellCount(int32_t num_markers);
// Whether an array of that many cells could be allocated now (it is freed at once). A count
// below 1 is an empty array and always fits. `allocate` is replaceable for tests.
using Allocator = void* (*)(std::size_t);
bool PairCellsFit(int32_t cells, Allocator allocate = nullptr);

}  // namespace gae
