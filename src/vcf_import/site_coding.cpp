#include "vcf_import/site_coding.h"

#include <algorithm>
#include <array>

#include "input/tool_codes.h"
#include "vocabulary/population.h"

namespace gae {

namespace {

GenotypeLetter Entry(int a, int b, char letter) {
  return {static_cast<int16_t>(std::min(a, b)), static_cast<int16_t>(std::max(a, b)), letter};
}

SiteCoding Dropped(DropReason reason) { return SiteCoding{reason, 0, {}}; }

bool AnyMissing(std::span<const SampleCall> parents) {
  return std::any_of(parents.begin(), parents.end(), [](SampleCall c) { return c.Missing(); });
}

bool AllHomozygous(std::span<const SampleCall> parents) {
  return std::all_of(parents.begin(), parents.end(), [](SampleCall c) { return c.Homozygous(); });
}

// Only the classes the population type shows are codes; the rest of a backcross or a line
// population stays uncoded, as the MAP reader would refuse or fold them.
SiteCoding TwoInbredParents(int32_t population_type, SampleCall p1, SampleCall p2) {
  if (!p1.Homozygous() || !p2.Homozygous() || p1.first == p2.first)
    return Dropped(DropReason::kParentsUninformative);
  const ClassRatios ratios = ExpectedRatios(population_type);
  SiteCoding coding{DropReason::kKept, 1, {}};
  if (ratios.p2 > 0) coding.letters.push_back(Entry(p1.first, p1.first, 'A'));
  if (ratios.p1 > 0) coding.letters.push_back(Entry(p1.first, p2.first, 'H'));
  if (ratios.p0 > 0) coding.letters.push_back(Entry(p2.first, p2.first, 'B'));
  return coding;
}

// The two gametes of each F1 parent: (a, b) from the first, (c, d) from the second. The letters
// are the reader's: AC..BD are A..D, XC E, XD F, AX G, BX H, AA I, AB J, BB K.
SiteCoding ClonalParents(int32_t population_type, std::array<int, 2> f, std::array<int, 2> m) {
  const bool f_het = f[0] != f[1], m_het = m[0] != m[1];
  if (!f_het && !m_het) return Dropped(DropReason::kParentsUninformative);
  SiteCoding coding{DropReason::kKept, 0, {}};
  if (f_het && m_het && !(std::min(f[0], f[1]) == std::min(m[0], m[1]) && std::max(f[0], f[1]) == std::max(m[0], m[1]))) {
    coding.category = 1;  // ABCD: the four gamete pairs are four genotypes
    coding.letters = {Entry(f[0], m[0], 'A'), Entry(f[0], m[1], 'B'), Entry(f[1], m[0], 'C'), Entry(f[1], m[1], 'D')};
  } else if (!f_het) {
    coding.category = 2;  // A=B: only the second parent segregates
    coding.letters = {Entry(f[0], m[0], 'E'), Entry(f[0], m[1], 'F')};
  } else if (!m_het) {
    coding.category = 3;  // C=D
    coding.letters = {Entry(f[0], m[0], 'G'), Entry(f[1], m[0], 'H')};
  } else {
    // Both parents carry the same two alleles: AB=CD in a clonal F1; in a double cross the
    // grandparents say whether A is C (4, A=CB=D) or D (5, A=DB=C).
    coding.category = population_type == 2 && f[0] == m[1] ? 5 : 4;
    coding.letters = {Entry(f[0], f[0], 'I'), Entry(f[0], f[1], 'J'), Entry(f[1], f[1], 'K')};
  }
  return coding;
}

SiteCoding Founders(std::span<const SampleCall> founders) {
  if (!AllHomozygous(founders)) return Dropped(DropReason::kParentsUninformative);
  SiteCoding coding{DropReason::kKept, 0, {}};
  bool alike = true;
  for (std::size_t k = 0; k < founders.size(); ++k) {
    std::size_t first = 0;
    while (founders[first].first != founders[k].first) ++first;
    if (first == k) coding.letters.push_back(Entry(founders[k].first, founders[k].first, static_cast<char>('A' + k)));
    if (first != 0) alike = false;
    coding.category = coding.category * 10 + static_cast<int32_t>(first + 1);
  }
  if (alike) return Dropped(DropReason::kParentsUninformative);
  return coding;
}

}  // namespace

SiteCoding CodeParents(const ImportDesign& design, std::span<const SampleCall> parents) {
  if (AnyMissing(parents)) return Dropped(DropReason::kParentMissing);
  if (design.tool_code == kPureLineToolCode) return Founders(parents);
  if (design.tool_code == kClonalToolCode) {
    // Two outbred parents give their own alleles in the order of the call, sorted so that the
    // site's coding does not hang on how the caller wrote an unphased heterozygote.
    if (design.parents == 2) {
      return ClonalParents(design.population_type,
                           {std::min(parents[0].first, parents[0].second), std::max(parents[0].first, parents[0].second)},
                           {std::min(parents[1].first, parents[1].second), std::max(parents[1].first, parents[1].second)});
    }
    if (!AllHomozygous(parents)) return Dropped(DropReason::kParentsUninformative);
    return ClonalParents(design.population_type, {parents[0].first, parents[1].first},
                         {parents[2].first, parents[3].first});
  }
  return TwoInbredParents(design.population_type, parents[0], parents[1]);
}

char ProgenyLetter(const SiteCoding& coding, SampleCall call) {
  if (call.Missing()) return 'X';
  const int16_t lo = std::min(call.first, call.second), hi = std::max(call.first, call.second);
  for (const GenotypeLetter& g : coding.letters)
    if (g.lo == lo && g.hi == hi) return g.letter;
  return '\0';
}

}  // namespace gae
