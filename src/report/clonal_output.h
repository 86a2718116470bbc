// Every result file of a finished clonal F1 or double-cross map, written beside the input.
#pragma once

#include <string>

#include "frame/uniform_stream.h"
#include "report/clonal_layout.h"
#include "twopoint/pair_table.h"

namespace gae {

struct ClonalOutputSwitches {
  bool lod = false, rec = false, dis = false, qtl_file = false;
};

// stem.sum, .sumf, .summ and .mtp always; .lod, .rec, .dis and their parental forms (f, m) by
// their switches; then the error scan, stemEC.cdm, .hap, .cdq (QTL switch) and .err.
void WriteClonalResults(const ClonalLayout& map, const PairTable& pairs, const std::string& stem,
                        const ClonalOutputSwitches& switches, UniformStream& random);

}  // namespace gae
