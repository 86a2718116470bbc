#include "input/chromosome_record.h"

namespace gae {

int32_t ChromosomeOfMarker(int64_t k, const std::vector<ChromosomeRecord>& records) {
  if (k < 1) return 0;
  int64_t running = 0;
  for (std::size_t i = 0; i < records.size(); ++i) {
    running += records[i].NumMarkers();
    if (running >= k) return static_cast<int32_t>(i + 1);
  }
  return 0;
}

}  // namespace gae
