#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gae {

// The chromosome number printed beside each of `rows` linked markers in map order: a counter
// that starts at 1 and moves up by at most one per row, whenever the row's running number
// passes the markers of chromosomes 1 up to the counter. An empty chromosome therefore makes
// the counter lag, and the rows after it carry a number one too low until it has caught up,
// as the marker table and the written map files always have.
std::vector<int32_t> LaggingChromosomeNumbers(std::span<const int32_t> chromosome_sizes, int64_t rows);

}  // namespace gae
