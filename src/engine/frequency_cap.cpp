#include "engine/frequency_cap.h"

#include <limits>

namespace gae {

CappedPairs::CappedPairs(const PairTable& table, int32_t n, float max_rf) {
  const int64_t pairs = n > 1 ? static_cast<int64_t>(n) * (n - 1) / 2 : 0;
  records_.resize(static_cast<std::size_t>(2 * pairs));
  const float none = std::numeric_limits<float>::quiet_NaN();
  for (int32_t i = 2; i <= n; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      const std::size_t k = static_cast<std::size_t>(GroupPairIndex(i, j) - 1);
      float first = table.First(i, j), second = table.Second(i, j);
      if (!(second < max_rf)) {
        first = second = none;
        ++capped_;
      }
      records_[2 * k] = first;
      records_[2 * k + 1] = second;
    }
  }
  table_ = PairTable{records_.data(), pairs, 2, table.mapping_function};
}

}  // namespace gae
