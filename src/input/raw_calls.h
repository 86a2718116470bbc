// The marker rows of a map tool's input file as they stand, before any population rule: the
// header, each row's name and tokens, and, for bi-parental files, the letter of each token with
// no fold. Checks that must see what the reader would hide (heterozygotes in lines declared
// inbred, a row longer than the population) start here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

struct RawCalls {
  int32_t population_type = 0, population_size = 0, num_markers = 0;
  std::vector<std::string> names;    // as they stand in the file
  std::vector<std::string> letters;  // bi-parental only: A H B D R X per individual, unfolded
};

// A row whose line holds more genotypes than the population has individuals: the reader would
// drop the rest of the line, or take an item as the next marker's name.
struct LongRow {
  int32_t marker = 0;  // 1-based; 0: none
  std::string name;
  int32_t items = 0;   // genotypes on the row's lines
  int line = 0;        // the line where the row ends
};

enum class RawCallsRead {
  kRead,        // every row read, every token a bi-parental code (or not bi-parental)
  kLongRow,     // stopped at `long_row`
  kUnreadable,  // the header or a row cannot be read, or a token is no code: the reader says why
};

// Reads `path` as a file of `tool_code` (the clonal and pure-line tools carry a category field
// before each name). Letters are kept for bi-parental tool codes only. Prints nothing and leaves
// the message code at 0.
RawCallsRead ReadRawCalls(const std::string& path, int tool_code, RawCalls& out, LongRow& long_row);

}  // namespace gae
