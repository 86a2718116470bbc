// The pure-line two-point estimate done to the letter: a founders x founders table of cells,
// classes merged column by column and then row by row, an E-step that splits each class head's
// count over its cells and an M-step from sums taken cell by cell in cell order. Slow and plain,
// it is what the engine's estimate must equal bit for bit.
#pragma once

#include <cstdint>

#include "twopoint/pure_line.h"

namespace gae::testing {

// The table of `lines` pairs of founder letters (any letter outside the population's is
// missing).
PureLineEstimate LiteralPureLinePair(int population_type, int64_t lines, int32_t first_pattern,
                                     int32_t second_pattern, const char* first_letters,
                                     const char* second_letters);

// The same from the cells' counts, cell F (a - 1) + b at index F (a - 1) + b - 1.
PureLineEstimate LiteralPureLineTable(int population_type, int32_t first_pattern, int32_t second_pattern,
                                      const float* cells);

}  // namespace gae::testing
