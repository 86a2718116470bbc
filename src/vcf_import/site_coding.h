// How one site's parental genotypes become a marker of the design, and each progeny call its
// letter. Alleles are the site's allele numbers (0 the reference), so a site with several
// alternative alleles is read by the alleles its parents actually carry:
//  - two inbred parents: kept when homozygous for different alleles; A is the first parent's
//    allele, B the second's; classes the population type cannot show (a heterozygote in a DH
//    or RIL line, the other parent's homozygote in a backcross) are not codes of the site.
//  - two outbred parents (clonal F1) or four inbred grandparents (double cross, the F1s being
//    the first and second pair): the parents' alleles give the category; ABCD where the four
//    kinds of gamete pairs are told apart, which takes a third or fourth allele or two
//    heterozygous parents with different alleles.
//  - four or eight inbred founders: the founders' alleles give the founder pattern, one digit
//    per founder (the first founder with the same allele); a line carries the letter of the
//    first founder with its allele, and a heterozygous line is not a code of the site.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "vcf_import/import_design.h"

namespace gae {

// One sample's call: two allele numbers, -1 when missing. A haploid call repeats its allele.
struct SampleCall {
  int16_t first = -1, second = -1;
  bool Missing() const { return first < 0 || second < 0; }
  bool Homozygous() const { return !Missing() && first == second; }
};

enum class DropReason : int {
  kKept,
  kParentMissing,       // a parent's call is missing (or was filtered out)
  kParentsUninformative,  // the parents cannot show segregation in this design
  kTooManyMissing,      // --max-missing
  kLowMinorAllele,      // --min-maf
  kNoSegregation,       // the progeny's calls show one class or none
};
inline constexpr int kDropReasons = 6;

// The codes a site can carry: each genotype the design can show (alleles lo <= hi) and its letter.
struct GenotypeLetter {
  int16_t lo, hi;
  char letter;
};

struct SiteCoding {
  DropReason reason = DropReason::kKept;
  int32_t category = 0;  // MAP 1; CDM 1..5; PLM the founder pattern
  std::vector<GenotypeLetter> letters;
};

SiteCoding CodeParents(const ImportDesign& design, std::span<const SampleCall> parents);

// The letter of a progeny call: X when missing; '\0' when the design cannot show the call.
char ProgenyLetter(const SiteCoding& coding, SampleCall call);

}  // namespace gae
