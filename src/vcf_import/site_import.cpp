#include "vcf_import/site_import.h"

#include <algorithm>
#include <vector>

namespace gae {

namespace {

// The call as the filters leave it.
SampleCall Filtered(const CallFilters& f, SampleCall call, std::span<const CallSupport> support, int sample,
                    CallTally& tally, bool count) {
  if (call.Missing() || support.empty()) return call;
  const CallSupport s = support[static_cast<std::size_t>(sample)];
  if (f.min_depth > 0 && s.depth != kUnknownDepth && s.depth < f.min_depth) {
    if (count) ++tally.low_depth;
    return SampleCall{};
  }
  if (f.min_quality > 0 && s.quality >= 0 && s.quality < f.min_quality) {
    if (count) ++tally.low_quality;
    return SampleCall{};
  }
  return call;
}

bool Segregates(const std::string& letters) {
  char seen = 0;
  for (char c : letters) {
    if (c == 'X') continue;
    if (seen == 0) seen = c;
    else if (c != seen) return true;
  }
  return false;
}

}  // namespace

double MinorAlleleFrequency(std::span<const SampleCall> calls, std::span<const int> progeny, int alleles) {
  std::vector<int64_t> count(static_cast<std::size_t>(std::max(alleles, 1)), 0);
  int64_t total = 0;
  for (int sample : progeny) {
    const SampleCall c = calls[static_cast<std::size_t>(sample)];
    if (c.Missing()) continue;
    for (int16_t a : {c.first, c.second})
      if (a < alleles) ++count[static_cast<std::size_t>(a)], ++total;
  }
  if (total == 0 || count.size() < 2) return 0.0;
  std::partial_sort(count.begin(), count.begin() + 2, count.end(), std::greater<>());
  return static_cast<double>(count[1]) / static_cast<double>(total);
}

SiteOutcome ImportSite(const ImportDesign& design, const CallFilters& filters, const SampleRoles& roles,
                       std::span<const SampleCall> calls, std::span<const CallSupport> support, int alleles) {
  SiteOutcome out;
  std::array<SampleCall, 8> parents{};
  for (std::size_t k = 0; k < roles.parents.size(); ++k) {
    const int s = roles.parents[k];
    parents[k] = Filtered(filters, calls[static_cast<std::size_t>(s)], support, s, out.calls, false);
  }
  const SiteCoding coding = CodeParents(design, std::span(parents.data(), roles.parents.size()));
  if (coding.reason != DropReason::kKept) {
    out.reason = coding.reason;
    return out;
  }
  std::vector<SampleCall> kept(calls.begin(), calls.end());
  out.letters.resize(roles.progeny.size());
  std::size_t missing = 0;
  for (std::size_t i = 0; i < roles.progeny.size(); ++i) {
    const int s = roles.progeny[i];
    SampleCall& call = kept[static_cast<std::size_t>(s)];
    call = Filtered(filters, call, support, s, out.calls, true);
    char letter = ProgenyLetter(coding, call);
    if (letter == '\0') ++out.calls.not_shown, letter = 'X';
    if (letter == 'X') ++missing;
    out.letters[i] = letter;
  }
  const double share = roles.progeny.empty() ? 1.0 : static_cast<double>(missing) / roles.progeny.size();
  if (share > filters.max_missing) out.reason = DropReason::kTooManyMissing;
  else if (filters.min_maf > 0 && MinorAlleleFrequency(kept, roles.progeny, alleles) < filters.min_maf)
    out.reason = DropReason::kLowMinorAllele;
  else if (!Segregates(out.letters)) out.reason = DropReason::kNoSegregation;
  if (out.reason != DropReason::kKept) {
    out.letters.clear();
    out.calls = {};
    return out;
  }
  out.category = coding.category;
  return out;
}

}  // namespace gae
