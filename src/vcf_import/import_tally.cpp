#include "vcf_import/import_tally.h"

namespace gae {

const char* DropReasonText(DropReason reason) {
  switch (reason) {
    case DropReason::kParentMissing: return "a parent's call missing";
    case DropReason::kParentsUninformative: return "parents not informative";
    case DropReason::kTooManyMissing: return "too many missing calls (--max-missing)";
    case DropReason::kLowMinorAllele: return "minor allele too rare (--min-maf)";
    case DropReason::kNoSegregation: return "no segregation among the progeny";
    default: return "kept";
  }
}

std::string ImportReportText(const ImportTally& t) {
  auto line = [](const std::string& what, uint64_t n) { return "  " + what + ": " + std::to_string(n) + "\n"; };
  std::string text = line("samples", static_cast<uint64_t>(t.parents + t.progeny)) + "    parents " +
                     std::to_string(t.parents) + ", progeny " + std::to_string(t.progeny) + "\n";
  text += line("sites read", t.sites);
  text += line("sites kept", t.kept);
  if (t.multi_allelic > 0)
    text += line("sites with more than two alleles", t.multi_allelic) + "    kept " +
            std::to_string(t.multi_allelic_kept) + "\n";
  text += line("sites dropped", t.sites - t.kept);
  for (int r = 1; r < kDropReasons; ++r)
    if (t.dropped[static_cast<std::size_t>(r)] > 0)
      text += "    " + std::string(DropReasonText(static_cast<DropReason>(r))) + ": " +
              std::to_string(t.dropped[static_cast<std::size_t>(r)]) + "\n";
  const CallTally& c = t.calls;
  if (c.low_depth + c.low_quality + c.not_shown > 0) {
    text += line("progeny calls set to missing in kept sites", c.low_depth + c.low_quality + c.not_shown);
    if (c.low_depth > 0) text += "    depth below --min-dp: " + std::to_string(c.low_depth) + "\n";
    if (c.low_quality > 0) text += "    genotype quality below --min-gq: " + std::to_string(c.low_quality) + "\n";
    if (c.not_shown > 0)
      text += "    genotypes the population cannot show: " + std::to_string(c.not_shown) + "\n";
  }
  text += "  marker names: " + std::to_string(t.names_from_id) + " from ID, " +
          std::to_string(t.names_from_position) + " as CHROM_POS";
  if (t.names_changed > 0) text += ", " + std::to_string(t.names_changed) + " changed to be one item of 35 characters, unique";
  return text + "\n";
}

}  // namespace gae
