// From SNP calls to the marker coding of the map tools.
//
// The parents' calls decide whether a marker is polymorphic and give its code; each progeny
// call then becomes the letter that the map tool's reader uses:
//  - two inbred parents (MAP): P1's homozygote A, P2's homozygote B, their heterozygote H,
//    "NN" X; a backcross cannot show the other parent's homozygote, and lines fixed by selfing
//    or doubling count a heterozygote as missing, as the MAP reader folds them;
//  - four parental alleles (CDM): the clonal two-letter types (AC, AD, ..., XX), stored as the
//    reader's letters A to K and X;
//  - founders of pure lines (PLM): the letter of the first founder that carries the call; a
//    heterozygous line (residual heterozygosity) is missing.
// A call the parents cannot produce is an error of the file, as is a heterozygous parent: the
// parents of these designs are inbred lines (or, in mode 20, single alleles).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "prep/snp_calls.h"
#include "prep/snp_input.h"

namespace gae {

// How the decision on a marker's polymorphism was reached.
enum class PolymorphismSource {
  kParent,            // the typed parents alone
  kProgenyAndParent,  // a missing parent inferred from the progeny, or parents contradicted by them
  kProgeny,           // both parental alleles of one side of a four-parent cross, from the progeny
};

// Failures of the progeny rule (catalogue codes).
inline constexpr int kSnpIllegalMarker = 3128;      // a heterozygous parent
inline constexpr int kSnpInvalidMarkerType = 3130;  // a progeny call the parents cannot give

struct SnpMarkerResult {
  int32_t code = 0;  // category (two or four parents), founder pattern (pure lines); 0 deleted
  PolymorphismSource source = PolymorphismSource::kParent;
  std::string letters;  // one letter per line, the map tool's alphabet; empty when deleted
  int failure = 0;      // 0, kSnpIllegalMarker or kSnpInvalidMarkerType
  int failure_index = 0;  // 1-based parent (illegal marker) or line (invalid type)
  int failure_call = 0;   // the offending call
};

struct SnpDesign {
  int tool_code = 2, mode = kTwoParentMode, population_type = 0, num_parents = 2, missing_method = 1;
};
SnpDesign DesignOf(const SnpInput& input);

SnpMarkerResult ConvertSnpMarker(const SnpDesign& design, std::span<const uint8_t> parents,
                                 std::span<const uint8_t> progeny);

struct SnpConversion {
  std::vector<SnpMarkerResult> markers;  // up to and including the first failure
  int failed_marker = 0;                 // 1-based marker of the first failure, 0 when none
};
SnpConversion ConvertSnpInput(const SnpInput& input);

}  // namespace gae
