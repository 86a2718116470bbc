// The header of a genomic-prediction (GSP) input file, as far as the front end needs it to size
// its arrays:
//
//   TrainingSize    lines with phenotypes and genotypes, on which the model is trained (1 or more)
//   BreedingSize    lines with genotypes only, whose values are predicted (0 or more: a file
//                   may hold a training population alone, for cross-validation)
//   NumTraits       1 or more
//   trait names     one list-directed read of NumTraits names of 19 characters
//
// The prediction tool reads the rest of the file under its own rules. These readers have no
// log and no message codes: a failure prints one line beginning "--Input error:" to standard
// output and returns false.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

struct GspHeader {
  int32_t training_size = 0;
  int32_t breeding_size = 0;
  int32_t num_traits = 0;
  std::vector<std::string> trait_names;  // 19 characters, blank padded
};

// The three sizes, and the trait names when `with_names`.
bool ReadGspHeader(InputFile& in, bool with_names, GspHeader& out);

}  // namespace gae
