#include "report/phenotype_rows.h"

#include <charconv>
#include <cmath>

#include "vocabulary/fixed_format.h"

namespace gae {

namespace {

bool MissingWord(std::string_view cell) {
  return cell.empty() || cell == "NA" || cell == "na" || cell == "*" || cell == "." || cell == "-";
}

// A number in seven significant digits, the 32-bit precision the reader keeps; a point for
// decimals whatever the host's locale.
std::string Cell(std::string_view text) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (MissingWord(text) || read.ec != std::errc() || read.ptr != text.data() + text.size() || !std::isfinite(value))
    return "NA";
  char buffer[32];
  const auto written = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 7);
  return std::string(buffer, written.ptr);
}

}  // namespace

bool NumericColumn(const std::vector<std::string>& cells) {
  for (const std::string& cell : cells) {
    double value = 0;
    const auto read = std::from_chars(cell.data(), cell.data() + cell.size(), value);
    if (!MissingWord(cell) && (read.ec != std::errc() || read.ptr != cell.data() + cell.size())) return false;
  }
  return true;
}

std::string WithPhenotypeRows(std::string_view qtl_text, std::string_view count_remark,
                              const std::vector<std::string>& names,
                              const std::vector<std::vector<std::string>>& rows) {
  std::string out;
  for (std::size_t at = 0; at < qtl_text.size();) {
    std::size_t end = qtl_text.find('\n', at);
    end = end == std::string_view::npos ? qtl_text.size() : end + 1;
    const std::string_view line = qtl_text.substr(at, end - at);
    if (line.find(count_remark) != std::string_view::npos && line.front() != '!')
      out += fmt::I(static_cast<long long>(rows.size()), 10) + "  " + std::string(count_remark) + "\n";
    else
      out += line;
    at = end;
  }
  for (std::size_t k = 0; k < rows.size(); ++k) {
    out += fmt::PadRight(k < names.size() ? names[k] : "Trait" + std::to_string(k + 1), 19);
    for (const std::string& cell : rows[k]) out.append(" ").append(Cell(cell));
    out += "\n";
  }
  return out;
}

}  // namespace gae
