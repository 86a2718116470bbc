#include "errorscan/err_report.h"

#include <vector>

#include "vocabulary/fixed_format.h"

namespace gae {

namespace {

struct Cell {
  int32_t marker;      // position in map order
  int32_t individual;  // 0-based
};

std::string RateLine(std::string_view gap, int64_t total, int64_t cells) {
  const float rate = cells > 0 ? static_cast<float>(total) / static_cast<float>(cells) : 0.0f;
  return fmt::A("ErrorRate ", 10) + std::string(gap) + fmt::F(rate, 8, 4) + "\n";
}

}  // namespace

std::string ErrReportText(int32_t num_individuals, std::span<const std::string> marker_names,
                          std::span<const int32_t> marker_numbers, std::string_view input_genotypes,
                          std::string_view corrected_genotypes) {
  const int32_t n = num_individuals > 0 ? num_individuals : 0;
  const int32_t markers = static_cast<int32_t>(marker_names.size());
  auto is_error = [&](int32_t m, int32_t i) {
    const std::size_t at = static_cast<std::size_t>(m) * n + i;
    return at < input_genotypes.size() && at < corrected_genotypes.size() && input_genotypes[at] != 'X' &&
           corrected_genotypes[at] == 'X';
  };
  auto input_letter = [&](int32_t m, int32_t i) {
    return std::string(1, input_genotypes[static_cast<std::size_t>(m) * n + i]);
  };
  int64_t total = 0;
  const int64_t cells = static_cast<int64_t>(n) * markers;
  const std::string gap(26, ' ');

  std::string out = "!Potential genotyping errors per individual\n";
  out += fmt::A("IndivID", 10) + fmt::A("Errors", 8) + fmt::A("MkID", 8) + fmt::A("MkType", 8) +
         fmt::A("MkID", 8) + fmt::A("MkType", 8) + "\n";
  for (int32_t i = 0; i < n; ++i) {
    std::string cells_text;
    int32_t count = 0;
    for (int32_t m = 0; m < markers; ++m) {
      if (!is_error(m, i)) continue;
      ++count;
      cells_text += fmt::I(marker_numbers[m], 8) + fmt::A(input_letter(m, i), 8);
    }
    if (count == 0) continue;
    total += count;
    out += fmt::I(i + 1, 10) + fmt::I(count, 8) + cells_text + "\n";
  }
  out += fmt::A("TotalError", 10) + fmt::I(total, 8) + "\n";
  out += RateLine("", total, cells) + "\n";

  out += "!Potential genotyping errors per marker\n";
  out += fmt::A("MarkerName", 10) + gap + fmt::A("MkID", 8) + fmt::A("Errors", 8) + fmt::A("IndivID", 8) +
         fmt::A("MkType", 8) + fmt::A("IndivID", 8) + fmt::A("MkType", 8) + "\n";
  for (int32_t m = 0; m < markers; ++m) {
    std::string cells_text;
    int32_t count = 0;
    for (int32_t i = 0; i < n; ++i) {
      if (!is_error(m, i)) continue;
      ++count;
      cells_text += fmt::I(i + 1, 8) + fmt::A(input_letter(m, i), 8);
    }
    if (count == 0) continue;
    out += fmt::A(fmt::PadRight(marker_names[m], 35), 35) + " " + fmt::I(marker_numbers[m], 8) +
           fmt::I(count, 8) + cells_text + "\n";
  }
  out += fmt::A("TotalError", 10) + gap + fmt::I(total, 8) + "\n";
  out += RateLine(gap, total, cells);
  return out;
}

}  // namespace gae
