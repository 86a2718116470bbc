#include "prep/trait_table.h"

#include <fstream>
#include <sstream>

#include "vocabulary/path_stem.h"

namespace gae {

namespace {

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields(1);
  for (const char c : line) {
    if (c == '\t') fields.emplace_back();
    else if (c != '\r') fields.back() += c;
  }
  return fields;
}

}  // namespace

std::string TraitTablePath(const std::string& input_path) { return PathStem(input_path) + ".traits.tsv"; }

std::string TraitTableText(const TraitTable& table) {
  std::string text = "id";
  for (const std::string& trait : table.traits) text.append("\t").append(trait);
  text += '\n';
  for (std::size_t i = 0; i < table.ids.size(); ++i) {
    text += table.ids[i];
    for (const auto& column : table.values) text.append("\t").append(i < column.size() ? column[i] : "NA");
    text += '\n';
  }
  return text;
}

std::optional<TraitTable> ParseTraitTable(const std::string& text, std::string* why) {
  std::istringstream in(text);
  std::string line;
  std::vector<std::string> header;
  if (!std::getline(in, line) || (header = Fields(line)).front() != "id") {
    if (why != nullptr) *why = "line 1: the header does not begin with \"id\"";
    return std::nullopt;
  }
  TraitTable table;
  table.traits.assign(header.begin() + 1, header.end());
  table.values.resize(table.traits.size());
  for (int number = 2; std::getline(in, line); ++number) {
    if (line.empty() || line == "\r") continue;
    const std::vector<std::string> fields = Fields(line);
    if (fields.size() != header.size()) {
      if (why != nullptr) *why = "line " + std::to_string(number) + ": expected " + std::to_string(header.size()) + " fields";
      return std::nullopt;
    }
    table.ids.push_back(fields[0]);
    for (std::size_t t = 0; t < table.traits.size(); ++t) table.values[t].push_back(fields[t + 1]);
  }
  return table;
}

std::optional<TraitTable> ReadTraitTableBeside(const std::string& input_path, std::string* why) {
  std::ifstream file(TraitTablePath(input_path), std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return ParseTraitTable(text.str(), why);
}

}  // namespace gae
