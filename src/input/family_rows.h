// The family rows of a nested association mapping file: each family of lines shares one
// parent with all the others, and the families together form the population.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

struct Family {
  std::string name;  // 19 characters, blank padded
  int32_t size = 0;  // lines in the family
};

// Reads `num_families` rows of a family name and its size; the sizes add up to the population
// size of the marker and phenotype sections. These rows keep the messages of their own, older
// form: 3506 for a row that cannot be read, 3517 for a size below 1 (or a total beyond the
// range of a population size). Returns true with `MessageCode` 0.
bool ReadFamilyRows(InputFile& in, int32_t num_families, std::vector<Family>& families,
                    int32_t& population_size);

}  // namespace gae
