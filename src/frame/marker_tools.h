// The checks of the marker tools: SNP conversion and marker binning.
#pragma once

#include "prep/snp_conversion.h"

namespace gae {

// Caller-owned arrays of the two checks, each of extent `num_markers` (names: 35 per marker,
// the marker index running fastest).
struct MarkerToolArrays {
  int num_markers = 0;
  int* name_codes = nullptr;
  int* anchor = nullptr;
  int* code = nullptr;  // SNP: the marker code (0 deleted); BIN: MarkerCategory
};

// Reads a SNP file with the caller's tool code, converts every marker and fills the arrays;
// logs to SNP.log.
void CheckErrorSnpEntry(int tool_code, int path_len, const char* path, const MarkerToolArrays& out,
                        int* status);
// Reads a binning input file (header, marker section, anchors) with the caller's tool code
// and fills the arrays; logs to BIN.log.
void CheckErrorBinEntry(int tool_code, int path_len, const char* path, const MarkerToolArrays& out,
                        int* status);

// Prints what the conversion has to say: the failure that stopped it (its code is left in
// `MessageCode`), the warning of each deleted marker, and the log's line on how each marker's
// polymorphism was decided.
void ReportSnpConversion(const SnpConversion& conversion);

}  // namespace gae
