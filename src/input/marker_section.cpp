#include "input/marker_section.h"

#include <string_view>

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/marker_decoders.h"
#include "input/repeated_names.h"
#include "input/tool_codes.h"

namespace gae {

namespace {


// One list-directed read of a row. The tokens are gathered as they come, so a row that claims
// more lines than the file holds fails when the items run out instead of reserving memory for
// the claim.
bool ReadRow(InputFile& in, bool with_category, int32_t population_size, std::string& category,
             std::string& name, std::vector<MarkerToken>& tokens) {
  ListRead read(in);
  tokens.clear();
  if (with_category && !read.Text(category, kCategoryWidth)) return false;
  if (!read.Text(name, kMarkerNameWidth)) return false;
  for (int32_t line = 0; line < population_size; ++line) {
    std::string_view item;
    if (!read.Item(item)) return false;
    tokens.emplace_back(item);
  }
  return true;
}

}  // namespace

bool ReadMarkerSection(InputFile& in, int tool_code, int32_t population_type, int32_t num_markers,
                       int32_t population_size, MarkerSection& out) {
  MessageCode() = 0;
  out = MarkerSection{};
  out.population_size = population_size;
  const bool with_category = HasCategoryField(tool_code);
  in.SkipRemarks();
  std::string category, name;
  std::vector<MarkerToken> tokens;
  for (int32_t m = 1; m <= num_markers; ++m) {
    if (!ReadRow(in, with_category, population_size, category, name, tokens)) {
      return MarkerFailure(2201, m, 0, {});
    }
    out.names.push_back(name);
    out.categories.push_back(1);
    const std::size_t base = out.types.size();
    out.types.resize(base + tokens.size());
    const MarkerRow row{m, category, tokens};
    if (!DecodeMarkerRow(tool_code, population_type, row,
                         std::span<char>(out.types.data() + base, tokens.size()),
                         out.categories.back()))
      return false;
  }

  const std::vector<std::string_view> views(out.names.begin(), out.names.end());
  if (const auto repeat = FirstRepeatedName(views)) {
    return MarkerFailure(2230, static_cast<int>(repeat->later + 1),
                         static_cast<int>(repeat->earlier + 1), views[repeat->later]);
  }
  return true;
}

bool MarkerFailure(int code, int marker, int line, std::string_view token) {
  MessageCode() = code;
  PrintMarkerMessage(marker, line, token);
  return false;
}

bool DecodeMarkerRow(int tool_code, int32_t population_type, const MarkerRow& row,
                     std::span<char> letters, int32_t& category) {
  switch (tool_code) {
    case 109: return DecodeSegmentLines(row, letters, category);
    case 110: return DecodeNestedAssociation(population_type, row, letters, category);
    case kClonalToolCode: return DecodeClonal(population_type, row, letters, category);
    case kPureLineToolCode: return DecodePureLine(population_type, row, letters, category);
    default: return DecodeBiparental(population_type, row, letters, category);
  }
}

}  // namespace gae
