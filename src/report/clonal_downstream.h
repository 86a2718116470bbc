// What follows the reports of a clonal F1 or double-cross map: the genotyping-error scan of
// the linked markers, the corrected data set EC.cdm, the linkage phases .hap, the QTL file
// .cdq with the genotypes as read brought into one phase, and the .err report.
#pragma once

#include <cstdint>
#include <string>

#include "vocabulary/uniform_stream.h"
#include <vector>

#include "report/clonal_layout.h"
#include "report/map_downstream.h"
#include "report/text_file.h"
#include "twopoint/pair_table.h"

namespace gae {

// Scans, then writes EC.cdm, .hap, .cdq (when `write_qtl_file`) and .err after the stem of
// `files`.
// Returns the number of genotypes the scan set to missing. With `suspects` (1-based marker
// numbers) those calls are set to missing in place of the scan's.
int64_t WriteClonalDownstreamFiles(const ClonalLayout& map, const PairTable& pairs,
                                   ResultFiles& files, bool write_qtl_file,
                                   UniformStream& random, const std::vector<GenotypeCell>* suspects = nullptr);

}  // namespace gae
