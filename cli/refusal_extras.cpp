#include "refusal_extras.h"

#include <fstream>

#include "input/list_reader.h"
#include "input/marker_refusal.h"
#include "input/raw_calls.h"
#include "library_output.h"
#include "prep/design_check.h"

namespace gaecli {

std::string FileLooksLike(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::string line;
  while (std::getline(in, line) && line.find_first_not_of(" \t\r") == std::string::npos) {
  }
  if (line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
  if (line.rfind("##fileformat=VCF", 0) == 0) return "a VCF file of variant calls: convert it to a MAP file first";
  // A MAP file begins with its population type, a number; a table of named columns does not.
  std::size_t cells = 1;
  for (const char c : line) cells += c == ',' || c == ';' || c == '\t';
  const std::string first = line.substr(0, line.find_first_of(",;\t "));
  int32_t number = 0;
  if (cells >= 3 && !gae::ParseInt(first, number))
    return "a csv file (a table with named columns, as R/qtl keeps crosses): gaengine import rqtl " + file +
           " --pop TYPE writes a MAP file from it";
  return "";
}

std::string BadMarkerMessage(const std::string& file, int tool_code, int marker) {
  gae::RawCalls calls;
  gae::LongRow ignored;
  {
    const LibraryOutput quiet(false);
    gae::ReadRawCalls(file, tool_code, calls, ignored);
  }
  if (marker < 1 || marker > static_cast<int>(calls.letters.size())) return "";
  const auto m = static_cast<std::size_t>(marker - 1);
  const std::string reason = gae::BiparentalRefusal(calls.population_type, calls.letters[m]);
  if (reason.empty()) return "";
  return file + ": marker " + calls.names[m] + " (number " + std::to_string(marker) + ") cannot be read as " +
         gae::TypeWithArticle(calls.population_type) + ": " + reason +
         "\n  hint: remove its row and its row in the anchor section; gaengine import rqtl --drop-bad-markers "
         "leaves such markers out";
}

}  // namespace gaecli
