// The reports of a clonal F1 or double-cross map. Beside the combined map (.sum, .lod, .rec,
// .dis from the combined frequency) each parent gets its own: the first parent's (.sumf,
// .lodf, .recf, .disf) leaves out the A=B markers, which do not segregate in it, and the
// second parent's (.summ, ...) the C=D markers. .mtp lists the linked markers with their twelve
// type counts and segregation test; .hap gives both parents' linkage phases along each chromosome.
//
// `map.category` holds the categories 1 to 5 and `map.types` the stored letters A to K, X.
// The pair table reads records of seven words (score, combined frequency, the two parents'
// LODs, the two parents' frequencies, the phase as an int32).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "report/clonal_layout.h"
#include "report/summary_text.h"
#include "twopoint/pair_table.h"

namespace gae {

enum class ClonalView { kCombined, kFirstParent, kSecondParent };

// Whether a marker of `category` is listed in the files of `view`.
bool ListedIn(ClonalView view, int32_t category);

// The summary of a view. The combined one takes positions from the map; a parent's builds
// them from its own frequencies: each listed marker lies the parent's distance from the listed
// marker before it, or the map's distance when the two are not neighbours in the map or the
// parent's frequency is 1/2.
SummaryTable ClonalSummary(const ClonalLayout& map, const PairTable& pairs, ClonalView view);

enum class ClonalMatrix { kLod, kRec, kDis };
std::string ClonalMatrixReport(const ClonalLayout& map, const PairTable& pairs, ClonalView view,
                               ClonalMatrix which);

// One row for each linked marker in map order (numbered by its place in the input), with its
// twelve counts, segregation test and category; unlinked and deleted markers are not listed.
std::string ClonalMtpReport(const ClonalLayout& map);

// Each linked marker's phase in each parent (map order): +1 in the phase of the first marker of
// its chromosome that segregates in that parent, -1 in the other, read along the chromosome
// from the phases of neighbouring pairs.
struct PhaseSigns {
  std::vector<int8_t> first, second;
};
PhaseSigns ClonalPhaseSigns(const ClonalLayout& map, const PairTable& pairs);

// The linkage phases of the linked markers and their genotypes brought into one phase along
// each chromosome.
struct Haplotypes {
  std::string text;                         // the .hap file
  std::vector<std::string> new_categories;  // category text of each linked marker after rewriting
  std::string genotypes;                    // `genotypes` with the exchanged alleles rewritten
};
// `genotypes` holds the linked markers' genotypes in map order, [k * individuals + i].
Haplotypes ClonalHaplotypes(const ClonalLayout& map, const PhaseSigns& signs, const std::string& genotypes);

}  // namespace gae
