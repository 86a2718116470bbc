#include "report/pure_line_reports.h"

#include "vocabulary/fixed_format.h"
#include "vocabulary/population.h"
#include "report/pure_line_segregation.h"

namespace gae {

std::string PlmMtpReport(const MapLayout& map) {
  using fmt::A;
  using fmt::F;
  using fmt::I;
  const int founders = PureLineFounders(map.population_type);
  std::string out = A("MarkerID", 12) + " " + A("MarkerName", 35);
  for (int f = 0; f < founders; ++f) out += A(std::string("Size(") + static_cast<char>('A' + f) + ")", 12);
  for (const char* word : {"Size(X)", "Chi-Square", "Pr>ChiSq", "Category"}) out += A(word, 12);
  out += "\n";
  for (int32_t row = 1; row <= map.num_mapped; ++row) {
    const int32_t marker = map.order[row - 1];
    const int32_t pattern = map.marker_class[marker - 1];
    const PureLineSegregation test =
        PureLineSegregationChiSquare(founders, pattern, map.TypesOf(marker), map.num_individuals);
    out += I(marker, 12) + " " + A(fmt::TrimRight(map.marker_names[marker - 1]), 35);
    for (int f = 0; f < founders; ++f) out += I(test.counts[f], 12);
    out += I(test.counts[8], 12) + F(test.chi_square, 12, 4) + F(test.probability, 12, 4) +
           A(PureLineCategoryText(founders, pattern), 12) + "\n";
  }
  return out;
}

}  // namespace gae
