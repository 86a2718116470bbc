// What an import did with the sites it read, for the report a breeder reads: sites read, kept
// and dropped by reason, calls set to missing by reason, and how the markers were named.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "vcf_import/site_import.h"

namespace gae {

struct ImportTally {
  uint64_t sites = 0, kept = 0;
  uint64_t multi_allelic = 0, multi_allelic_kept = 0;  // sites with more than one alternative allele
  std::array<uint64_t, kDropReasons> dropped{};        // by DropReason (index 0 unused)
  CallTally calls;                                     // in kept sites
  uint64_t names_from_id = 0, names_from_position = 0, names_changed = 0;
  int parents = 0, progeny = 0;
};

// The words of a drop reason in the report ("parents not informative").
const char* DropReasonText(DropReason reason);

// The report: one line per count, the drop reasons that occurred and the calls set to missing.
std::string ImportReportText(const ImportTally& tally);

}  // namespace gae
