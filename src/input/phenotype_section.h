// Sections of phenotype rows. A row is a name (of a trait, or of an environment in the
// multi-environment files) followed by one value for each line of the population; rows may
// wrap over several lines and values may be separated by tabs, as when pasted from a
// spreadsheet.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/list_reader.h"

namespace gae {

struct PhenotypeTable {
  std::vector<std::string> names;  // 19 characters, blank padded, one per row
  std::vector<float> values;       // row after row: values[(t-1)*population_size + (line-1)]
  int32_t population_size = 0;
};

// The phenotype section of the QTL tools: `num_rows` rows (traits, or environments), codes
// 2401 (a row cannot be read) and 2402 (a value is not a number, after its 2407 line). After
// each row the outlier report runs over the rows read so far, so its heading and findings
// repeat once per row. Returns true with `MessageCode` 0.
bool ReadPhenotypeSection(InputFile& in, int64_t num_rows, int32_t population_size,
                          PhenotypeTable& out, bool& missing_word_seen);

// The phenotype rows of the segment-line tool: codes 2405 and 2406, no outlier report.
bool ReadSegmentLinePhenotypes(InputFile& in, int64_t num_rows, int32_t population_size,
                               PhenotypeTable& out, bool& missing_word_seen);

// One list-directed read of `count` phenotype cells (each cut to 20 characters), appended to
// `cells`; false when the items run out first.
bool ReadPhenotypeCells(ListRead& read, int64_t count, std::vector<std::string_view>& cells);

}  // namespace gae
