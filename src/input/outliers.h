// Possible outliers among the phenotypes of a trait, reported as warnings to the run log. A
// value is flagged when it lies more than three interquartile ranges beyond the first or third
// quartile (Tukey's "far out" fences). The report never stops a run.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gae {

struct FiveNumbers {
  float minimum, q1, median, q3, maximum;
};

// Minimum, quartiles, median and maximum of a sample of at least one value, as five equally
// spaced quantiles by linear interpolation between order statistics (Hyndman and Fan's
// definition 7, the default of R and NumPy): the p-quantile lies at 0-based rank (n-1)p.
FiveNumbers FiveNumberSummary(std::span<const float> sample);

struct Outlier {
  int32_t line;  // 1-based
  float value;
  float statistic;  // distance beyond the nearer quartile in interquartile ranges
  bool high;
};

// The flagged values of one trait, in line order; missing values take no part.
std::vector<Outlier> FindOutliers(std::span<const float> row);

// The heading, then every finding of the first `num_traits` rows of `values` (row-major,
// `population_size` values a row), to the log only. `MessageCode` is 0 afterwards.
void ReportOutliers(int32_t num_traits, int32_t population_size, std::span<const float> values);
// The same report from findings already made, one list per trait.
void PrintOutlierReport(const std::vector<std::vector<Outlier>>& per_trait);

}  // namespace gae
