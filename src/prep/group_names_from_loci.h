// Linkage groups named after the chromosomes their markers come from, when an import left a
// locus table beside the input: a breeder reads "1A" where the engine would say "Chromosome3".
#pragma once

#include <string>
#include <vector>

#include "prep/locus_table.h"

namespace gae {

// `names`: the engine's group names, replaced where a group's markers mostly come from one
// chromosome of `table` that no larger group claims (cut to `width` characters, blank padded).
// `marker_names`: the input's marker names in file order; `group_of`: each marker's 1-based
// group, 0 or less for none.
void NameGroupsByChromosome(const LocusTable& table, const std::vector<std::string>& marker_names,
                            const std::vector<int>& group_of, std::size_t width, std::vector<std::string>& names);

}  // namespace gae
