#include "prep/map_input_text.h"

#include <algorithm>

#include "vocabulary/fixed_format.h"
#include "report/remark_blocks.h"
#include "input/tool_codes.h"

namespace gae {

namespace {

std::string NumericLine(long long value, std::string_view remark) {
  return fmt::I(value, 10) + "  " + std::string(remark) + "\n";
}

std::string PopulationRemark(int tool_code) {
  if (tool_code == kClonalToolCode) return "!Mapping Population Type (1 for Clonal F1; 2 for Double Cross)";
  if (tool_code == kPureLineToolCode)
    return "!Mapping Population Type (1 for 4PDH; 2 for 4PRIL; 3 for 8PDH; 4 for 8PRIL)";
  return "!Mapping Population (see remarks above)";
}

std::string CategoryField(const MapInputRecord& r, std::size_t m) {
  if (r.tool_code == kClonalToolCode) return ClonalCategoryField(r.categories[m], r.population_type);
  if (r.tool_code == kPureLineToolCode) return FounderPatternField(r.categories[m]);
  return {};
}

std::string Cells(const MapInputRecord& r, const std::string& letters) {
  std::string text;
  text.reserve(letters.size() * 3);
  for (char c : letters) {
    text += ' ';
    if (r.tool_code == kClonalToolCode) text += ClonalToken(c);
    else text += c;
  }
  return text;
}

}  // namespace

std::string ClonalCategoryField(int32_t category, int32_t population_type) {
  switch (category) {
    case 1: return "ABCD";
    case 2: return "A=B";
    case 3: return "C=D";
    case 4: return population_type == 2 ? "A=CB=D" : "AB=CD";
    case 5: return "A=DB=C";
    default: return "?";
  }
}

std::string FounderPatternField(int32_t pattern) {
  std::string digits = std::to_string(pattern), field;
  for (char d : digits) field += static_cast<char>('A' + (d - '1'));
  return field;
}

std::string ClonalToken(char letter) {
  static const char* const kTokens[] = {"AC", "AD", "BC", "BD", "XC", "XD",
                                        "AX", "BX", "AA", "AB", "BB"};
  if (letter >= 'A' && letter <= 'K') return kTokens[letter - 'A'];
  return "XX";
}

std::string MapInputText(const MapInputRecord& r) {
  std::string out;
  // Rows of a large data set run to many megabytes: one allocation, not a doubling series.
  out.reserve(16384 + r.names.size() * (2 * 48 + 3 * static_cast<std::size_t>(std::max(r.population_size, 0))));
  if (r.tool_code == kClonalToolCode) out += BlockText(ClonalGeneralBlock());
  else if (r.tool_code == kPureLineToolCode) out += BlockText(PureLineGeneralBlock());
  else out += BlockText(BiparentalGeneralBlock());
  out += NumericLine(r.population_type, PopulationRemark(r.tool_code));
  out += NumericLine(r.mapping_function, "!Mapping Function (1 for Kosambi; 2 for Haldane; 3 for Morgan)");
  out += NumericLine(r.space_type, "!Marker Space Type (1 for intervals; 2 for positions)");
  out += NumericLine(static_cast<long long>(r.names.size()), "!Number of Markers");
  out += NumericLine(r.population_size, "!Size of the mapping population");
  out += "\n";
  if (r.tool_code == kClonalToolCode) out += BlockText(ClonalMarkerTypeBlock());
  else if (r.tool_code == kPureLineToolCode) out += BlockText(PureLineMarkerTypeBlock());
  else out += BlockText(BiparentalMarkerTypeBlock());
  for (std::size_t m = 0; m < r.names.size(); ++m) {
    const std::string category = CategoryField(r, m);
    if (!category.empty()) out += fmt::PadRight(category, 8) + " ";
    out += fmt::PadRight(r.names[m], 35) + Cells(r, r.letters[m]) + "\n";
  }
  out += "\n";
  out += BlockText(AnchorBlock());
  for (std::size_t m = 0; m < r.names.size(); ++m)
    out += fmt::PadRight(r.names[m], 35) + " " + fmt::I(m < r.anchors.size() ? r.anchors[m] : 0, 8) + "\n";
  out += "\n";
  return out;
}

}  // namespace gae
