// The individuals of an imported file, by their own IDs, and their trait values: the side table
// that an import writes beside the input file it makes (`<stem>.traits.tsv`), since the MAP
// grammar keeps individuals by row number and has no phenotypes. The map run puts the traits
// into the QTL files it writes.
//
// Tab-separated text: a header line "id" and the trait names, then one row per individual in
// the input's order. A value is a number with a point for decimals, or NA for missing.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace gae {

struct TraitTable {
  std::vector<std::string> ids;                   // per individual
  std::vector<std::string> traits;                // names, without blanks
  std::vector<std::vector<std::string>> values;   // [trait][individual], as the file had them
};

std::string TraitTablePath(const std::string& input_path);
std::string TraitTableText(const TraitTable& table);
// nullopt with `why` (the line and the fault) when the text is malformed.
std::optional<TraitTable> ParseTraitTable(const std::string& text, std::string* why = nullptr);
std::optional<TraitTable> ReadTraitTableBeside(const std::string& input_path, std::string* why = nullptr);

}  // namespace gae
