// The layout shared by every summary file of a map (.sum and the parental .sumf, .summ): the
// map section, the chromosome table, the unlinked and the deleted markers; and the layout of
// the pairwise matrices (.lod, .rec, .dis and their parental forms).
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "report/map_layout.h"

namespace gae {

struct SummaryRow {
  int32_t chromosome = 0;  // 1-based
  int32_t marker = 0;      // number in the input file
  float interval = 0.0f, position = 0.0f, rec_freq = 0.5f, interference = 0.0f;
};

struct SummaryTable {
  std::vector<SummaryRow> rows;            // chromosome by chromosome, map order
  std::vector<int32_t> chromosome_markers;  // markers listed on each chromosome
  std::vector<float> chromosome_lengths;   // cM
  std::vector<int32_t> unlinked, deleted;  // marker numbers
  bool interference = true;                // the bi-parental map has the column; others do not
};

// Names of markers and chromosomes come from `map`.
std::string SummaryText(const FinishedMapLayout& map, const SummaryTable& table);
// The sections after the map section: the chromosome table, the unlinked and the deleted
// markers. A tool whose map section has columns of its own (the consensus) writes that
// section itself and ends with these.
std::string SummarySectionsText(const FinishedMapLayout& map, const SummaryTable& table);
// The chromosome sizes and lengths and the unlinked and deleted markers of a finished map;
// the map section's rows are left empty.
SummaryTable FinishedMapSections(const FinishedMapLayout& map);

// The lower triangle of a pair value over the first 100 of `markers` (input numbers in map
// order): header, then row i with its number, name, anchor and the values of the pairs
// (markers[i], markers[j]) for j < i.
std::string PairMatrixText(const FinishedMapLayout& map, std::span<const int32_t> markers,
                           const std::function<float(int32_t, int32_t)>& value);

}  // namespace gae
