#include "report/chromosome_counter.h"

namespace gae {

std::vector<int32_t> LaggingChromosomeNumbers(std::span<const int32_t> chromosome_sizes, int64_t rows) {
  std::vector<int32_t> numbers(static_cast<std::size_t>(rows > 0 ? rows : 0));
  int32_t counter = 1;
  int64_t through_counter = chromosome_sizes.empty() ? 0 : chromosome_sizes[0];
  for (int64_t row = 1; row <= rows; ++row) {
    if (row > through_counter && static_cast<std::size_t>(counter) < chromosome_sizes.size()) {
      through_counter += chromosome_sizes[counter];
      ++counter;
    }
    numbers[row - 1] = counter;
  }
  return numbers;
}

}  // namespace gae
