// Every result file of a finished clonal F1 or double-cross map, written beside the input.
#pragma once

#include <string>

#include "vocabulary/uniform_stream.h"
#include "report/clonal_layout.h"
#include "report/text_file.h"
#include "twopoint/pair_table.h"

namespace gae {

struct ClonalOutputSwitches {
  bool lod = false, rec = false, dis = false, qtl_file = false;
};

// .sum, .sumf, .summ and .mtp always; .lod, .rec, .dis and their parental forms (f, m) by
// their switches; then the error scan, EC.cdm, .hap, .cdq (QTL switch) and .err, each after
// the stem of `files`.
void WriteClonalResults(const ClonalLayout& map, const PairTable& pairs, ResultFiles& files,
                        const ClonalOutputSwitches& switches, UniformStream& random);

}  // namespace gae
