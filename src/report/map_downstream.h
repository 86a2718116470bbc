// What follows the reports of a bi-parental map: the input files of the QTL tools, the
// genotyping-error scan of the linked markers, the corrected data set EC.map and the .err
// report.
#pragma once

#include <cstdint>
#include <string>

#include "frame/uniform_stream.h"
#include "report/map_layout.h"

namespace gae {

// Writes stem.sdl, stem.bip and stem.met when `write_qtl_files`, then scans, and writes
// stemEC.map and stem.err. Returns the number of genotypes the scan set to missing.
int64_t WriteMapDownstreamFiles(const MapLayout& map, const std::string& stem,
                                bool write_qtl_files, UniformStream& random);

// The same for a four-way or eight-way pure-line map (`map.marker_class` holds the founder
// patterns): stem.plq when `write_qtl_files`, then the scan with the pure-line tables, stemEC.plm
// and stem.err.
int64_t WritePlmDownstreamFiles(const MapLayout& map, const std::string& stem,
                                bool write_qtl_files, UniformStream& random);

}  // namespace gae
