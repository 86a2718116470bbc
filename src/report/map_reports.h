// The fixed-column reports of a bi-parental map: .sum (the map with intervals, frequencies and
// interference, the chromosome table, unlinked and deleted markers), .mtp (the marker table
// with the segregation test) and the pairwise matrices .lod, .rec and .dis of the first 100
// markers of the map order. Each writer returns the file's text.
#pragma once

#include <string>

#include "report/map_layout.h"
#include "twopoint/pair_table.h"

namespace gae {

std::string SumReport(const MapLayout& map, const PairTable& pairs);
// Sections 2 to 4 of `.sum`, the same for every map tool: the chromosome table closed by the
// whole genome, then the unlinked and the deleted markers.
std::string SumTableSections(const MapLayout& map);
std::string MtpReport(const MapLayout& map);

enum class PairMatrix { kLod, kRec, kDis };
std::string PairMatrixReport(const MapLayout& map, const PairTable& pairs, PairMatrix which);

// Interference between three consecutive markers from the frequencies left-middle (r1),
// middle-right (r2) and left-right (r3); 0.0 when r1 r2 is at most 0.000001.
float Interference(float r1, float r2, float r3);

}  // namespace gae
