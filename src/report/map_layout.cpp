#include "report/map_layout.h"

namespace gae {

std::vector<int32_t> LaggingChromosomeNumbers(const MapLayout& map) {
  std::vector<int32_t> numbers(map.num_mapped);
  int32_t counter = 1;
  int64_t through_counter = map.chromosome_sizes.empty() ? 0 : map.chromosome_sizes[0];
  for (int32_t row = 1; row <= map.num_mapped; ++row) {
    if (row > through_counter && counter < map.NumChromosomes()) {
      ++counter;
      through_counter += map.chromosome_sizes[counter - 1];
    }
    numbers[row - 1] = counter;
  }
  return numbers;
}

}  // namespace gae
