// The trial file of the analysis-of-variance tool: a table with a title line. The first two
// values give its size: the number of rows counting the title line, and the number of columns.
// The title line names the three leading columns (environment, genotype, block) and then the
// traits; each data row holds an environment, a genotype, a block and one value per trait.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

struct AovTrial {
  int32_t num_rows = 0;                   // counting the title line
  int32_t num_cols = 0;                   // three labels and the traits
  std::vector<std::string> column_titles;  // the three leading titles, 19 characters
  std::vector<std::string> trait_names;   // 19 characters
  std::vector<std::string> labels;        // environment, genotype, block of each data row
  std::vector<float> values;              // row after row, one value per trait
};

// Reads and checks the table: 3301 to 3305 for the size and title, then 2403 (a row cannot be
// read) and 2404 (a value is not a number, after its 2407 line) with the 1-based data row.
// Returns true with `MessageCode` 0.
bool ReadAovTrial(InputFile& in, AovTrial& out, bool& missing_word_seen);

}  // namespace gae
