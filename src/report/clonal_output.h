// Every result file of a finished clonal F1 or double-cross map, written beside the input.
#pragma once

#include <cstdint>
#include <string>

#include "vocabulary/uniform_stream.h"
#include <vector>

#include "report/clonal_layout.h"
#include "report/map_downstream.h"
#include "report/text_file.h"
#include "report/tool_results.h"
#include "twopoint/pair_table.h"

namespace gae {

// .sum, .sumf, .summ and .mtp always; .lod, .rec, .dis and their parental forms (f, m) by
// their switches; then the error scan, EC.cdm, .hap, .cdq (QTL switch) and .err, each after
// the stem of `files`. Returns the number of genotypes the scan set to missing. With `suspects`,
// EC.cdm has those calls missing instead of the scan's.
int64_t WriteClonalResults(const ClonalLayout& map, const PairTable& pairs, ResultFiles& files,
                           const ResultSwitches& switches, UniformStream& random,
                           const std::vector<GenotypeCell>* suspects = nullptr);

}  // namespace gae
