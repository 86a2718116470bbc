// The p-value of each marker's segregation test, for the distortion filter of marker binning:
// a marker far from the ratios its population and category expect is more likely mis-scored
// than informative.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gae {

// `letters`: the reader's letters, `num_individuals` per marker. Tool code 20 tests the clonal
// classes of the category (1:1:1:1, 1:1, or 1:2:1), 30 the founder letters in proportion to
// the founders that share them, any other code the bi-parental ratios. A marker that cannot be
// tested gets 1.
std::vector<float> SegregationPValues(int tool_code, int32_t population_type,
                                      std::span<const int32_t> categories, const char* letters,
                                      int32_t num_individuals);

}  // namespace gae
