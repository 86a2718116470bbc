// Every result file of a finished bi-parental or pure-line map, as a whole run writes them,
// whoever built the map.
#pragma once

#include <cstdint>

#include "vocabulary/uniform_stream.h"
#include "report/map_downstream.h"
#include "report/map_layout.h"
#include "report/text_file.h"
#include "twopoint/pair_table.h"

namespace gae {

// Which optional files a run writes: the pair matrices, and the input files of the QTL tools.
struct ResultSwitches {
  bool lod = false, rec = false, dis = false, qtl_files = false;
};

// .sum, then .lod, .rec and .dis by their switches: what the bi-parental and pure-line tools
// write alike.
void WriteSharedMapReports(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                           ResultFiles& files);

// The shared reports, .mtp, then the error scan and its files (EC.map, .err; .sdl, .bip and
// .met by the QTL switch). Returns the number of genotypes the scan set to missing.
// With `suspects`, the corrected data set sets those calls to missing instead of scanning.
int64_t WriteMapResults(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                        UniformStream& random, ResultFiles& files, const std::vector<GenotypeCell>* suspects = nullptr);
// The same for four-way and eight-way pure lines (EC.plm, .err; .plq by the QTL switch).
int64_t WritePlmResults(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                        UniformStream& random, ResultFiles& files, const std::vector<GenotypeCell>* suspects = nullptr);

}  // namespace gae
