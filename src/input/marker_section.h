// The marker section: one row per marker with the genotype of every line of the population.
// Each free-form token becomes a one-letter code, letters that the population cannot show are
// folded, illegal rows are refused, and each marker gets its category.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

// The widths the category field and the marker name are read to; longer items are cut.
inline constexpr std::size_t kCategoryWidth = 8;
inline constexpr std::size_t kMarkerNameWidth = 35;

struct MarkerSection {
  std::vector<std::string> names;      // 35 characters, blank padded
  std::vector<int32_t> categories;     // MarkerCategory per marker (MAP: 1 codominant, 12 dominant, 10 recessive)
  std::vector<char> types;             // decoded (and folded) one-letter genotypes, PopulationSize x NumMarkers,
                                       // the line index running fastest: types[(m-1)*population_size + (line-1)]
  int32_t population_size = 0;
};

// Reads `num_markers` rows. A row is the marker name followed by `population_size` tokens; the
// clonal (20) and pure-line (30) tools put a category field of 8 characters before the name.
// Rows may wrap over several lines. The decoder is chosen by the tool code: 109 (chromosome
// segment lines), 110 (nested association), 20, 30, and the bi-parental rules for every other
// code (2, 104, 106, 107, 108). Returns true with `MessageCode` 0, or false after the line of
// the first failure.
bool ReadMarkerSection(InputFile& in, int tool_code, int32_t population_type, int32_t num_markers,
                       int32_t population_size, MarkerSection& out);

}  // namespace gae
