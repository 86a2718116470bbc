// The `.err` report: the genotypes that the error scan set to missing, listed by individual
// and by marker.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace gae {

// An error is a cell whose input genotype is not X and whose corrected genotype is X; input
// cells that were already missing never count, even when the scan flagged the value that
// imputation had put there.
//
// `marker_names` (35 characters, blank padded) and `marker_numbers` (numbers in the input
// file) describe the linked markers in map order; `input_genotypes` and `corrected_genotypes`
// are [marker * num_individuals + individual] over the same markers. The error rate divides
// the total by (individuals x linked markers) in single precision, missing input included; it
// is 0 when there is no cell at all.
std::string ErrReportText(int32_t num_individuals, std::span<const std::string> marker_names,
                          std::span<const int32_t> marker_numbers, std::string_view input_genotypes,
                          std::string_view corrected_genotypes);

}  // namespace gae
