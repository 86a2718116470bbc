#include "vocabulary/fixed_format.h"

#include <charconv>
#include <cmath>
#include <vector>

namespace gae::fmt {

namespace {

std::string Stars(int width) { return std::string(width > 0 ? width : 0, '*'); }

std::string RightJustify(const std::string& text, int width) {
  if (static_cast<int>(text.size()) > width) return Stars(width);
  return std::string(width - text.size(), ' ') + text;
}

// Non-finite values are written as words that no reader mistakes for a number: "NaN",
// "Infinity" (or "Inf" in a narrow field), with the sign of a negative infinity.
std::string NonFinite(double value, int width) {
  if (std::isnan(value)) return width < 3 ? Stars(width) : RightJustify("NaN", width);
  const bool negative = value < 0;
  const int need_short = negative ? 4 : 3;
  const int need_long = negative ? 9 : 8;
  if (width < need_short) return Stars(width);
  std::string text = width < need_long ? "Inf" : "Infinity";
  if (negative) text = "-" + text;
  return RightJustify(text, width);
}

}  // namespace

std::string I(long long value, int width) {
  return RightJustify(std::to_string(value), width);
}

std::string F(double value, int width, int decimals) {
  if (!std::isfinite(value)) return NonFinite(value, width);
  const bool negative = std::signbit(value);
  const double magnitude = std::fabs(value);

  // The exact decimal expansion of the binary value, then rounding half away from zero at the
  // wanted decimal: a tie is decided on the true value. to_chars writes a point whatever
  // locale the host program has set.
  const int extra = 60;
  std::vector<char> buffer(400 + decimals + extra);
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                     std::chars_format::fixed, decimals + extra);
  std::string digits(buffer.data(), written.ptr);
  const std::size_t point = digits.find('.');
  std::string int_part = digits.substr(0, point);
  std::string frac_part = digits.substr(point + 1, decimals);
  const bool round_up = digits[point + 1 + decimals] >= '5';
  if (round_up) {
    std::string all = int_part + frac_part;
    int i = static_cast<int>(all.size()) - 1;
    while (i >= 0 && all[i] == '9') all[i--] = '0';
    if (i < 0) all.insert(all.begin(), '1');
    else ++all[i];
    int_part = all.substr(0, all.size() - decimals);
    frac_part = all.substr(all.size() - decimals);
  }
  bool all_zero = true;
  for (char c : int_part + frac_part) all_zero = all_zero && c == '0';
  // A negative value that rounds to zero is written without its sign.
  const std::string sign = (negative && !all_zero) ? "-" : "";
  std::string text = sign + int_part + "." + frac_part;
  // The zero before the point is optional and dropped when the field is too narrow for it.
  if (static_cast<int>(text.size()) > width && int_part == "0") text = sign + "." + frac_part;
  return RightJustify(text, width);
}

std::string A(std::string_view text, int width) {
  if (width <= 0) return {};
  if (static_cast<int>(text.size()) >= width) return std::string(text.substr(0, width));
  return std::string(width - text.size(), ' ') + std::string(text);
}

std::string LeftAdjust(std::string_view field) {
  std::size_t first = field.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::string(field);
  return std::string(field.substr(first)) + std::string(first, ' ');
}

std::string TrimRight(std::string_view text) {
  std::size_t end = text.find_last_not_of(' ');
  return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end + 1));
}

std::string TrimLeft(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string Trim(std::string_view text) { return TrimLeft(TrimRight(text)); }

std::string IntValue(long long value) { return TrimRight(LeftAdjust(I(value, 8))); }

std::string PadRight(std::string_view text, std::size_t width) {
  if (text.size() >= width) return std::string(text.substr(0, width));
  return std::string(text) + std::string(width - text.size(), ' ');
}

}  // namespace gae::fmt
