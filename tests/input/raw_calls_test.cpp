// The rows of a MAP file as they stand: a row whose line holds more genotypes than the header's
// population is caught with its marker, both counts and its line, while rows that wrap over
// lines or end in a remark are not.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/raw_calls.h"
#include "input/tool_codes.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

class RawCallsRows : public testing::InTempDir {};

TEST_F(RawCallsRows, LongRowsAreCaughtAndWrappedOrRemarkedRowsAreNot) {
  struct Case {
    const char* what;
    std::string rows;
    RawCallsRead expected;
    const char* marker;
    int items, line;
  };
  const std::vector<Case> cases = {
      {"rows of four", "M1 A H B A\nM2 B B H A\n", RawCallsRead::kRead, "", 0, 0},
      {"a row over two lines", "M1 A H\n B A\nM2 B,B,H,A\n", RawCallsRead::kRead, "", 0, 0},
      {"a remark after a row", "M1 A H B A ! first\nM2 B B H A\n", RawCallsRead::kRead, "", 0, 0},
      {"one genotype too many", "M1 A H B A\nM2 B B H A X\n", RawCallsRead::kLongRow, "M2", 5, 7},
      {"too many on a wrapped row", "M1 A H\nB A H H\nM2 B B H A\n", RawCallsRead::kLongRow, "M1", 6, 7},
      // The reader's own refusal explains a short row, which takes the next name as a genotype.
      {"a short row eats the next name", "M1 A H B\nM2 B B H A\n", RawCallsRead::kUnreadable, "", 0, 0},
      {"a code that is none", "M1 A H Q A\nM2 B B H A\n", RawCallsRead::kUnreadable, "", 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    testing::WriteText("rows.map", "7\n1\n1\n2\n4\n" + c.rows + "M1 0\nM2 0\n");
    RawCalls calls;
    LongRow row;
    EXPECT_EQ(ReadRawCalls("rows.map", kMapToolCode, calls, row), c.expected);
    if (c.expected == RawCallsRead::kLongRow) {
      EXPECT_EQ(row.name, c.marker);
      EXPECT_EQ(row.items, c.items);
      EXPECT_EQ(row.line, c.line);
    }
    if (c.expected == RawCallsRead::kRead) {
      ASSERT_EQ(calls.letters.size(), 2u);
      EXPECT_EQ(calls.letters[0], "AHBA");
      EXPECT_EQ(calls.letters[1], "BBHA");
    }
  }
}

}  // namespace
}  // namespace gae
