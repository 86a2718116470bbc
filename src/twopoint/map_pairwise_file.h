// The pairwise file of a bi-parental population: every marker pair estimated by the two-point
// engine and stored as (minus the LOD, recombination frequency).
#pragma once

#include <cstdint>
#include <string>

#include "twopoint/pair_store_writer.h"

namespace gae {

struct BiparentalMarkers {
  int32_t population_type = 0;
  int32_t mapping_function = 1;
  int64_t num_markers = 0;
  int64_t num_individuals = 0;
  const int32_t* kinds = nullptr;  // by marker: 1 co-dominant, 12 dominant, 10 recessive
  const char* types = nullptr;     // genotype letters, individuals fastest, marker by marker
};

// Writes `project path less its last four characters`.LRD unless a complete file lies there,
// and leaves its name, record length (2 words) and the mapping function in the process state
// for the stages that follow. Prints 2801, any 2802 warnings and 2803 to the MAP log. `ok` is
// false only when the file cannot be written; `not_a_number` counts the pairs stored as
// unlinked for want of an estimate (0 when a complete file was reused).
PairStoreWritten MAPPairwiseFile(const std::string& project_path, const BiparentalMarkers& markers,
                                 int threads);

}  // namespace gae
