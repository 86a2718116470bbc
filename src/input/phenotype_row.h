// Phenotype values and the rules for missing ones.
//
// A missing value is the real -9999.0 throughout the engine. In a file it may be written as
// -9999, as one of the words "NA", "na", "*", "." and "-", or, in files of the oldest form, as
// -100. The two conventions cannot both hold: once any row of the process has used a word,
// -100 is an ordinary number again, for every later row, file and call (the flag is
// process-wide and never cleared, so two runs in one process may differ from two runs in two).
#pragma once

#include <span>
#include <string_view>

namespace gae {

inline constexpr float kMissingPhenotype = -9999.0f;
inline constexpr std::size_t kPhenotypeCellWidth = 20;

// Not a number, or within 0.0001 of -9999.
bool IsMissingPhenotype(float value);
// One of the five words, compared exactly (a mixed-case "Na" is not one).
bool IsMissingWord(std::string_view token);

// Turns one row of tokens (each at most 20 characters) into values of the same extent. A token
// that is not a number gives code 2407 with its 1-based number and the token; the row stops
// there. `missing_word_seen` is the process-wide flag described above.
bool ParsePhenotypeRow(std::span<const std::string_view> tokens, std::span<float> values,
                       bool& missing_word_seen);

}  // namespace gae
