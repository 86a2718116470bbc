// The fixed-column reports of a bi-parental map: .sum (the map with intervals, frequencies and
// interference, the chromosome table, unlinked and deleted markers), .mtp (the marker table
// with the segregation test) and the pairwise matrices .lod, .rec and .dis of the first 100
// markers of the map order. Each writer returns the file's text.
#pragma once

#include <string>

#include "report/map_layout.h"
#include "report/summary_text.h"
#include "twopoint/pair_table.h"

namespace gae {

std::string SumReport(const MapLayout& map, const PairTable& pairs);
// The summary of any tool's whole map as the caller laid it out, with or without the
// interference column.
SummaryTable CombinedSummary(const FinishedMapLayout& map, const PairTable& pairs, bool interference);
std::string MtpReport(const MapLayout& map);

enum class PairMatrix { kLod, kRec, kDis };
// Any tool's finished map: the pair values in map order, distances by its mapping function.
std::string PairMatrixReport(const FinishedMapLayout& map, const PairTable& pairs, PairMatrix which);

// Interference between three consecutive markers from the frequencies left-middle (r1),
// middle-right (r2) and left-right (r3); 0.0 when r1 r2 is at most 0.000001.
float Interference(float r1, float r2, float r3);

}  // namespace gae
