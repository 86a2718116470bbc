// Putting an imported data set in place. The input file and its locus table are written under
// temporary names beside their final ones, the input file is read back by the map tool's own
// reader, and only a file the reader accepts is renamed into place: a refused or failed import
// leaves no file behind, nor a half-written one.
#pragma once

#include <string>

#include "prep/locus_table.h"
#include "prep/map_input_text.h"

namespace gae {

struct PlacedImport {
  int reader_code = 0;  // the reader's MessageCode when it refused the file, else 0
  std::string error;    // a file that could not be written, else empty
  bool Ok() const { return reader_code == 0 && error.empty(); }
};

// `reader_tool_code`: 104 MAP, 20 CDM, 30 PLM. The reader prints its lines on standard output.
PlacedImport PlaceImportedFiles(const std::string& output_path, int reader_tool_code, const MapInputRecord& record,
                                const LocusTable& loci);

}  // namespace gae
