#include "input/raw_calls.h"

#include "input/biparental_calls.h"
#include "input/header_fields.h"
#include "input/list_reader.h"
#include "input/tool_codes.h"
#include "vocabulary/message_code.h"

namespace gae {

namespace {

bool ReadHeader(InputFile& in, int tool_code, RawCalls& out) {
  int32_t ignored = 0;
  const bool read = ReadHeaderField(in, HeaderField::kPopulationType, tool_code, out.population_type) &&
                    ReadHeaderField(in, HeaderField::kMappingFunction, tool_code, ignored) &&
                    ReadHeaderField(in, HeaderField::kSpaceType, tool_code, ignored) &&
                    ReadHeaderField(in, HeaderField::kNumMarkers, tool_code, out.num_markers) &&
                    ReadHeaderField(in, HeaderField::kPopulationSize, tool_code, out.population_size);
  MessageCode() = 0;
  return read;
}

}  // namespace

RawCallsRead ReadRawCalls(const std::string& path, int tool_code, RawCalls& out, LongRow& long_row) {
  out = RawCalls{};
  long_row = LongRow{};
  InputFile in;
  if (!in.Open(path) || !ReadHeader(in, tool_code, out)) return RawCallsRead::kUnreadable;
  // Segment lines (109) and nested association (110) have codes of their own.
  const bool biparental = !HasCategoryField(tool_code) && tool_code != 109 && tool_code != 110;
  in.SkipRemarks();
  std::string_view item;
  for (int32_t m = 1; m <= out.num_markers; ++m) {
    if (HasCategoryField(tool_code) && !in.NextItem(item)) return RawCallsRead::kUnreadable;
    if (!in.NextItem(item)) return RawCallsRead::kUnreadable;
    out.names.emplace_back(item);
    std::string letters;
    for (int32_t l = 0; l < out.population_size; ++l) {
      if (!in.NextItem(item)) return RawCallsRead::kUnreadable;
      if (!biparental) continue;
      letters += BiparentalTokenLetter(item);
      if (letters.back() == 'Z') return RawCallsRead::kUnreadable;
    }
    if (const int extra = in.ItemsLeftOnLine(); extra > 0) {
      long_row = {m, out.names.back(), out.population_size + extra, in.LineNumber()};
      return RawCallsRead::kLongRow;
    }
    in.EndRead();
    if (biparental) out.letters.push_back(std::move(letters));
  }
  return RawCallsRead::kRead;
}

}  // namespace gae
