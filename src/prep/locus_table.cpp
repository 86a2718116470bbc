#include "prep/locus_table.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

#include "vocabulary/path_stem.h"

namespace gae {
namespace {

constexpr const char* kHeader = "marker\tchromosome\tposition";

std::vector<std::string> SplitTabs(const std::string& line) {
  std::vector<std::string> fields(1);
  for (char c : line) {
    if (c == '\t') {
      fields.emplace_back();
    } else if (c != '\r') {
      fields.back() += c;
    }
  }
  return fields;
}

// std::to_chars and from_chars never consult the host's locale: a point is always a point.
std::string FormatPosition(double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

std::optional<double> ParsePosition(const std::string& text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::string LocusTablePath(const std::string& input_path) { return PathStem(input_path) + ".loci.tsv"; }

std::string LocusTableText(const LocusTable& table) {
  std::string text = kHeader;
  text += '\n';
  for (const LocusRow& row : table.rows) {
    text += row.marker;
    text += '\t';
    text += row.chromosome;
    text += '\t';
    if (row.position) text += FormatPosition(*row.position);
    text += '\n';
  }
  return text;
}

std::optional<LocusTable> ParseLocusTable(const std::string& text, std::string* why) {
  auto fail = [&](int line, const std::string& what) -> std::optional<LocusTable> {
    if (why != nullptr) *why = "line " + std::to_string(line) + ": " + what;
    return std::nullopt;
  };
  std::istringstream in(text);
  std::string line;
  if (!std::getline(in, line) || SplitTabs(line) != SplitTabs(kHeader)) {
    return fail(1, "the header is not \"marker, chromosome, position\" separated by tabs");
  }
  LocusTable table;
  for (int number = 2; std::getline(in, line); ++number) {
    if (line.empty() || line == "\r") continue;
    const std::vector<std::string> fields = SplitTabs(line);
    if (fields.size() != 3) return fail(number, "expected 3 tab-separated fields");
    if (fields[0].empty()) return fail(number, "no marker name");
    LocusRow row{fields[0], fields[1], std::nullopt};
    if (!fields[2].empty()) {
      row.position = ParsePosition(fields[2]);
      if (!row.position) return fail(number, "position '" + fields[2] + "' is not a number");
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

std::optional<LocusTable> ReadLocusTableBeside(const std::string& input_path, std::string* why) {
  std::ifstream file(LocusTablePath(input_path), std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return ParseLocusTable(text.str(), why);
}

}  // namespace gae
