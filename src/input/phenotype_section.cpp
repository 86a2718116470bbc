#include "input/phenotype_section.h"

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/outliers.h"
#include "input/phenotype_row.h"

namespace gae {

namespace {

struct RowCodes {
  int read;   // the row cannot be read
  int parse;  // a value is not a number
};

int MessageRow(int64_t row) { return row > 2147483647 ? 2147483647 : static_cast<int>(row); }

bool ReadRows(InputFile& in, int64_t num_rows, int32_t population_size, RowCodes codes,
              bool report_outliers, PhenotypeTable& out, bool& missing_word_seen) {
  MessageCode() = 0;
  out = PhenotypeTable{};
  out.population_size = population_size;
  in.SkipRemarks();
  std::vector<std::string_view> cells;
  std::vector<std::vector<Outlier>> findings;
  for (int64_t t = 1; t <= num_rows; ++t) {
    std::string name;
    cells.clear();
    {
      ListRead read(in);
      if (!read.Text(name, 19) || !ReadPhenotypeCells(read, population_size, cells)) {
        MessageCode() = codes.read;
        PrintPhenotypeMessage(MessageRow(t), {});
        return false;
      }
    }
    out.names.push_back(name);
    const std::size_t base = out.values.size();
    out.values.resize(base + cells.size());
    if (!ParsePhenotypeRow(cells, std::span<float>(out.values.data() + base, cells.size()),
                           missing_word_seen)) {
      MessageCode() = codes.parse;
      PrintPhenotypeMessage(MessageRow(t), name);
      return false;
    }
    // The report runs over the whole table after each row. Rows not read yet are all zero and
    // flag nothing, and a row's findings do not change, so each row is examined once.
    if (report_outliers) {
      findings.push_back(FindOutliers(std::span<const float>(out.values.data() + base, cells.size())));
      PrintOutlierReport(findings);
    }
  }
  return true;
}

}  // namespace

bool ReadPhenotypeCells(ListRead& read, int64_t count, std::vector<std::string_view>& cells) {
  for (int64_t i = 0; i < count; ++i) {
    std::string_view item;
    if (!read.Item(item)) return false;
    cells.push_back(item.substr(0, kPhenotypeCellWidth));
  }
  return true;
}

bool ReadPhenotypeSection(InputFile& in, int64_t num_rows, int32_t population_size,
                          PhenotypeTable& out, bool& missing_word_seen) {
  return ReadRows(in, num_rows, population_size, {2401, 2402}, true, out, missing_word_seen);
}

bool ReadSegmentLinePhenotypes(InputFile& in, int64_t num_rows, int32_t population_size,
                               PhenotypeTable& out, bool& missing_word_seen) {
  return ReadRows(in, num_rows, population_size, {2405, 2406}, false, out, missing_word_seen);
}

}  // namespace gae
