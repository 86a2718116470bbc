// Fixed-column text fields of the reports and log lines.
//   I(v, w)     integer right-justified in w columns
//   F(v, w, d)  real with d decimals right-justified in w columns
//   A(s, w)     text right-justified in w columns, cut to its first w characters
// A value that does not fit its field fills the field with asterisks: a reader of the fixed
// columns then sees a field that is clearly unusable rather than a number shifted into its
// neighbour's columns.
#pragma once

#include <string>
#include <string_view>

namespace gae::fmt {

std::string I(long long value, int width);
std::string F(double value, int width, int decimals);
std::string A(std::string_view text, int width);

// Leading blanks moved to the end: the field keeps its width.
std::string LeftAdjust(std::string_view field);
std::string TrimRight(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string Trim(std::string_view text);

// An integer in an I8 field, left-adjusted and with its trailing blanks dropped: the form of
// every integer value inside a message line ("********" when it needs more than 8 columns).
std::string IntValue(long long value);

// Blank-padded (or cut) to exactly `width` characters, text on the left: the fixed-length
// character variables that hold names and tokens.
std::string PadRight(std::string_view text, std::size_t width);

}  // namespace gae::fmt
