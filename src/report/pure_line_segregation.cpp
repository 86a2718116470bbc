#include "report/pure_line_segregation.h"

#include <cmath>
#include <limits>

#include "vocabulary/chi_square.h"

namespace gae {

int FounderDigit(int founders, int32_t pattern, int founder) {
  int64_t divisor = 1;
  for (int k = founder; k < founders; ++k) divisor *= 10;
  return static_cast<int>((pattern / divisor) % 10);
}

PureLineSegregation PureLineSegregationChiSquare(int founders, int32_t pattern,
                                                 const char* letters, int64_t num_lines) {
  PureLineSegregation out;
  for (int64_t i = 0; i < num_lines; ++i) {
    const char c = letters[i];
    if (c >= 'A' && c <= 'H') ++out.counts[c - 'A'];
    else if (c == 'X') ++out.counts[8];
  }
  int32_t n = 0;
  for (int k = 0; k < founders; ++k) n += out.counts[k];
  float chi = 0.0f;
  int groups = 0;
  for (int k = 1; k <= founders; ++k) {
    int32_t c = 0;
    for (int f = 1; f <= founders; ++f) c += FounderDigit(founders, pattern, f) == k;
    if (c == 0) continue;
    ++groups;
    const float expected = static_cast<float>((c * n) / founders);
    const float d = static_cast<float>(out.counts[k - 1]) - expected;
    chi += d * d / expected;
  }
  out.chi_square = chi;
  out.probability = std::isnan(chi) ? std::numeric_limits<float>::quiet_NaN()
                                    : 1.0f - CHIDF(chi, static_cast<float>(groups - 1));
  return out;
}

std::string PureLineCategoryText(int founders, int32_t pattern) {
  std::string text;
  for (int f = 1; f <= founders; ++f)
    if (FounderDigit(founders, pattern, f) == 1) text += static_cast<char>('A' + f - 1);
  return text;
}

std::string PureLinePatternField(int founders, int32_t pattern) {
  std::string text;
  for (int f = 1; f <= founders; ++f) {
    const int digit = FounderDigit(founders, pattern, f);
    // The reader writes any letter past G as 8; among valid fields that is H alone.
    text += (digit >= 1 && digit <= 8) ? static_cast<char>('A' + digit - 1) : '?';
  }
  return text;
}

}  // namespace gae
