#include "input/phenotype_row.h"

#include <algorithm>
#include <cmath>

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/list_reader.h"

namespace gae {

namespace {

constexpr std::string_view kMissingWords[] = {"NA", "na", "*", ".", "-"};
constexpr float kOldMissing = -100.0f;

}  // namespace

bool IsMissingPhenotype(float value) {
  return std::isnan(value) || std::fabs(value - kMissingPhenotype) < 0.0001f;
}

bool IsMissingWord(std::string_view token) {
  return std::find(std::begin(kMissingWords), std::end(kMissingWords), token) !=
         std::end(kMissingWords);
}

bool ParsePhenotypeRow(std::span<const std::string_view> tokens, std::span<float> values,
                       bool& missing_word_seen) {
  if (!missing_word_seen) missing_word_seen = std::any_of(tokens.begin(), tokens.end(), IsMissingWord);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (missing_word_seen && IsMissingWord(tokens[i])) {
      values[i] = kMissingPhenotype;
    } else if (!ParseReal(tokens[i], values[i])) {
      MessageCode() = 2407;
      PrintPhenotypeMessage(static_cast<int>(std::min<std::size_t>(i + 1, 2147483647)), tokens[i]);
      return false;
    }
    MessageCode() = 0;
  }
  if (!missing_word_seen) {
    for (float& v : values) {
      if (std::fabs(v - kOldMissing) < 0.0001f) v = kMissingPhenotype;
    }
  }
  return true;
}

}  // namespace gae
