#include "input/outliers.h"

#include <algorithm>
#include <cmath>

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/phenotype_row.h"

namespace gae {

namespace {

// Hyndman-Fan definition 7 on a sorted sample.
float Quantile(const std::vector<float>& sorted, double p) {
  const double rank = p * static_cast<double>(sorted.size() - 1);
  const auto low = static_cast<std::size_t>(std::floor(rank));
  if (low + 1 >= sorted.size()) return sorted.back();
  const auto fraction = static_cast<float>(rank - static_cast<double>(low));
  return sorted[low] + fraction * (sorted[low + 1] - sorted[low]);
}

}  // namespace

FiveNumbers FiveNumberSummary(std::span<const float> sample) {
  std::vector<float> sorted(sample.begin(), sample.end());
  std::sort(sorted.begin(), sorted.end());
  return {sorted.front(), Quantile(sorted, 0.25), Quantile(sorted, 0.5), Quantile(sorted, 0.75),
          sorted.back()};
}

std::vector<Outlier> FindOutliers(std::span<const float> row) {
  std::vector<float> present;
  for (float v : row) {
    if (!IsMissingPhenotype(v)) present.push_back(v);
  }
  std::vector<Outlier> found;
  if (present.empty()) return found;
  const FiveNumbers five = FiveNumberSummary(present);
  const float spread = five.q3 - five.q1;
  const float high = five.q3 + 3.0f * spread;
  const float low = five.q1 - 3.0f * spread;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const float x = row[i];
    if (IsMissingPhenotype(x)) continue;
    // With Q1 = Q3 the fences coincide and the statistic divides by zero: an infinite
    // distance, which is what such a value is in interquartile ranges.
    if (x > high) {
      found.push_back({static_cast<int32_t>(i + 1), x, (x - five.q3) / spread, true});
    } else if (x < low) {
      found.push_back({static_cast<int32_t>(i + 1), x, (x - five.q1) / (five.q1 - five.q3), false});
    }
  }
  return found;
}

void PrintOutlierReport(const std::vector<std::vector<Outlier>>& per_trait) {
  MessageCode() = 2701;
  PrintOutlierMessage(0, 0, 0.0f, 0.0f);
  MessageCode() = 0;
  for (std::size_t t = 0; t < per_trait.size(); ++t) {
    for (const Outlier& o : per_trait[t]) {
      MessageCode() = o.high ? 2702 : 2703;
      PrintOutlierMessage(static_cast<int>(t + 1), o.line, o.value, o.statistic);
      MessageCode() = 0;
    }
  }
}

void ReportOutliers(int32_t num_traits, int32_t population_size, std::span<const float> values) {
  std::vector<std::vector<Outlier>> per_trait;
  const auto width = static_cast<std::size_t>(std::max(population_size, 0));
  for (int32_t t = 1; t <= num_traits; ++t) {
    const std::size_t end = static_cast<std::size_t>(t) * width;
    per_trait.push_back(end <= values.size() && width > 0
                            ? FindOutliers(values.subspan(end - width, width))
                            : std::vector<Outlier>{});
  }
  PrintOutlierReport(per_trait);
}

}  // namespace gae
