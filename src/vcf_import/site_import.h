// One site from its calls to a marker row, or to the reason it is dropped. The breeder's
// filters act here: a call of too low a depth or genotype quality is set to missing first (in
// parents too, so a poorly covered parent drops the site); after the parents have coded the
// site, a site with too large a share of missing progeny, too rare a minor allele among the
// progeny or no segregation left among them is dropped.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "vcf_import/site_coding.h"

namespace gae {

struct CallFilters {
  int32_t min_depth = 0;        // --min-dp; a call with an unknown depth passes
  float min_quality = 0;        // --min-gq; a call with an unknown quality passes
  double max_missing = 1.0;     // --max-missing: the largest share of missing progeny letters kept
  double min_maf = 0.0;         // --min-maf: over the alleles of the progeny's calls
};

// Per sample, what the filters look at beside the call; kUnknown where the file has no value.
inline constexpr int32_t kUnknownDepth = -1;
struct CallSupport {
  int32_t depth = kUnknownDepth;
  float quality = -1.0f;  // negative: unknown
};

// Which samples are parents (in the design's order) and which the progeny (in file order).
struct SampleRoles {
  std::vector<int> parents, progeny;
};

// Counts of calls set to missing; those of a dropped site are not kept.
struct CallTally {
  uint64_t low_depth = 0, low_quality = 0, not_shown = 0;
  void Add(const CallTally& other) {
    low_depth += other.low_depth;
    low_quality += other.low_quality;
    not_shown += other.not_shown;
  }
};

struct SiteOutcome {
  DropReason reason = DropReason::kKept;
  int32_t category = 0;
  std::string letters;  // one per progeny, when kept
  CallTally calls;
};

// `calls` and `support` hold every sample of the file (`support` may be empty: no filter data).
// `alleles` is the site's allele count (reference included).
SiteOutcome ImportSite(const ImportDesign& design, const CallFilters& filters, const SampleRoles& roles,
                       std::span<const SampleCall> calls, std::span<const CallSupport> support, int alleles);

// The share of the progeny's called alleles that the second most frequent allele has (0 when
// one allele or none is called).
double MinorAlleleFrequency(std::span<const SampleCall> calls, std::span<const int> progeny, int alleles);

}  // namespace gae
