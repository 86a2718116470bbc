// Bodies of the exported validators: read and check the file, release what the reader built,
// report (see file_entry.h).
#pragma once

#include <string_view>

#include "input/qtl_file_reader.h"

namespace gae {

void CheckQtlFileEntry(QtlTool tool, int path_len, const char* path, int* status);
void CheckAovEntry(int path_len, const char* path, int* status);

// The marker-count export of the SNP and binning tools: opens the tool's log, reads the header
// under the caller's `tool_code` and ends with the 1102 or 1101 line of `dll_name`.
void FindNumMarkersEntry(std::string_view tool, std::string_view dll_name, int tool_code,
                         int path_len, const char* path, int* num_markers, int* status);

// The genomic-prediction entries report through a logical flag (bit 0 set: failure) and open
// no log. On failure nothing else is written.
void GspFindNumTraitsEntry(int path_len, const char* path, int* num_traits, int* error_flag);
// Trait names as character codes, `num_traits` (the caller's extent) by 19 with the trait index
// running fastest; `first_value` receives the training population size.
void GspFindTraitNameEntry(int path_len, const char* path, int num_traits, int* names,
                           int* first_value, int* error_flag);

}  // namespace gae
