#include "input/aov_trial.h"

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/phenotype_row.h"
#include "input/phenotype_section.h"

namespace gae {

namespace {

constexpr std::size_t kNameWidth = 19;
constexpr int kLabelColumns = 3;

bool Fail(int code, int value = 0) {
  MessageCode() = code;
  PrintMessage(code, {value});
  return false;
}

bool ReadCount(InputFile& in, int read_code, int range_code, int32_t least, int32_t& value) {
  in.SkipRemarks();
  {
    ListRead read(in);
    if (!read.Int(value)) return Fail(read_code);
  }
  return value >= least ? true : Fail(range_code, value);
}

bool ReadTitle(InputFile& in, AovTrial& out) {
  in.SkipRemarks();
  ListRead read(in);
  for (int32_t c = 1; c <= out.num_cols; ++c) {
    std::string title;
    if (!read.Text(title, kNameWidth)) return Fail(3305);
    (c <= kLabelColumns ? out.column_titles : out.trait_names).push_back(std::move(title));
  }
  return true;
}

bool ReadDataRows(InputFile& in, AovTrial& out, bool& missing_word_seen) {
  const int64_t traits = out.num_cols - kLabelColumns;
  std::vector<std::string_view> cells;
  for (int32_t r = 1; r < out.num_rows; ++r) {
    cells.clear();
    std::string label[kLabelColumns];
    {
      ListRead read(in);
      bool ok = true;
      for (std::string& l : label) ok = ok && read.Text(l, kNameWidth);
      if (!ok || !ReadPhenotypeCells(read, traits, cells)) {
        MessageCode() = 2403;
        PrintPhenotypeMessage(r, {});
        return false;
      }
    }
    for (std::string& l : label) out.labels.push_back(std::move(l));
    const std::size_t base = out.values.size();
    out.values.resize(base + cells.size());
    if (!ParsePhenotypeRow(cells, std::span<float>(out.values.data() + base, cells.size()),
                           missing_word_seen)) {
      MessageCode() = 2404;
      PrintPhenotypeMessage(r, {});
      return false;
    }
  }
  return true;
}

}  // namespace

bool ReadAovTrial(InputFile& in, AovTrial& out, bool& missing_word_seen) {
  MessageCode() = 0;
  out = AovTrial{};
  if (!ReadCount(in, 3301, 3302, 2, out.num_rows)) return false;
  if (!ReadCount(in, 3303, 3304, 4, out.num_cols)) return false;
  if (!ReadTitle(in, out)) return false;
  in.SkipRemarks();  // remarks may stand before a section, as anywhere between sections
  return ReadDataRows(in, out, missing_word_seen);
}

}  // namespace gae
