// Variant calls of a mapping population (VCF, bgzipped VCF or BCF) to the input file of a map
// tool. Each site's GT calls pass the filters and the parents' coding (site_import.h); kept
// sites become marker rows in file order, with their chromosome and position in the locus
// table. A file that cannot be read to its end is refused as a whole.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "prep/locus_table.h"
#include "prep/map_input_text.h"
#include "vcf_import/import_design.h"
#include "vcf_import/import_tally.h"
#include "vcf_import/site_import.h"

namespace gae {

struct VcfImportRequest {
  std::string path;
  ImportDesign design;
  std::vector<std::string> parents;  // sample names, in the design's order
  CallFilters filters;
  int threads = 0;                   // extra decompression threads
  std::function<void(double)> progress;  // share of the file read, called now and then
};

struct VcfImport {
  MapInputRecord record;
  LocusTable loci;
  ImportTally tally;
};

// False with `error` saying what is wrong in the file's terms (the site, the sample names).
bool ReadVcfImport(const VcfImportRequest& request, VcfImport& out, std::string& error);

}  // namespace gae
