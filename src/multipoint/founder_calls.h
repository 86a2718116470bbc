// Pure lines' calls as the chain reads them. A line shows the letter of a founder (A to H);
// founders that share an allele at a marker show one letter there, that of the first of them,
// and the marker's founder pattern (one decimal digit per founder, equal digits for a shared
// allele) says which. A call therefore agrees with every founder of its allele, and a wrong
// call is any of the marker's other alleles.
#pragma once

#include <cstdint>
#include <vector>

#include "multipoint/group_calls.h"

namespace gae {

// The allele (the pattern's digit) of founder `f` (0-based) at a marker of `founders` founders.
int FounderAllele(int32_t pattern, int founders, int f);

// `letters` marker-major (letters[m * num_individuals + i]); a letter beyond the founders is
// missing.
GroupCalls MakeFounderCalls(int32_t pure_line_type, int32_t num_individuals, const std::vector<char>& letters,
                            const std::vector<int32_t>& patterns);

}  // namespace gae
