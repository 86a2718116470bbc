// What follows the reports of a bi-parental map: the input files of the QTL tools, the
// genotyping-error scan of the linked markers, the corrected data set EC.map and the .err
// report.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vocabulary/uniform_stream.h"
#include "report/map_layout.h"
#include "report/text_file.h"

namespace gae {

// Writes the .sdl, .bip and .met files when `write_qtl_files`, then scans, and writes the EC.map
// and .err files, all through `files`. Returns the number of genotypes the scan set to missing.
// With `suspects` (cells of the input genotypes, `marker` 1-based input number, `individual`
// 0-based) the corrected data set sets exactly those calls to missing instead of scanning: a
// multipoint map already weighed every call against the whole chromosome.
struct GenotypeCell {
  int32_t marker;
  int32_t individual;
};
int64_t WriteMapDownstreamFiles(const MapLayout& map, bool write_qtl_files, UniformStream& random,
                                ResultFiles& files, const std::vector<GenotypeCell>* suspects = nullptr);

// The same for a four-way or eight-way pure-line map (`map.marker_class` holds the founder
// patterns): .plq when `write_qtl_files`, then the scan with the pure-line tables (or the
// `suspects` set to missing), EC.plm and .err.
int64_t WritePlmDownstreamFiles(const MapLayout& map, bool write_qtl_files, UniformStream& random,
                                ResultFiles& files, const std::vector<GenotypeCell>* suspects = nullptr);

}  // namespace gae
