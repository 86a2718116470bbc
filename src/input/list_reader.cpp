#include "input/list_reader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale.h>

#include "vocabulary/fixed_format.h"

namespace gae {

namespace {

// Only the first 128 characters of a line take part in the remark test.
constexpr std::size_t kRemarkBuffer = 128;

bool IsSeparator(char c) {
  return c == ' ' || c == '\t' || c == ',' || c == '\r' || c == '\v' || c == '\f';
}

bool IsBlankLine(std::string_view line) {
  return std::all_of(line.begin(), line.end(), [](char c) { return IsSeparator(c) && c != ','; });
}

}  // namespace

bool InputFile::Open(const std::string& path) {
  Close();
  struct stat info {};
  if (path.empty() || ::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  // One read of the size the file has, then whatever it has grown by since.
  text_.resize(static_cast<std::size_t>(info.st_size));
  in.read(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.resize(static_cast<std::size_t>(in.gcount()));
  if (!in.eof() && !in.bad()) text_.append(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) {
    text_.clear();
    return false;
  }
  pos_ = 0;
  open_ = true;
  return true;
}

void InputFile::Close() {
  text_.clear();
  text_.shrink_to_fit();
  pos_ = 0;
  open_ = false;
}

void InputFile::SkipRemarks() {
  while (pos_ < text_.size()) {
    std::size_t end = text_.find('\n', pos_);
    if (end == std::string::npos) end = text_.size();
    std::string_view line(text_.data() + pos_, end - pos_);
    if (line.size() > kRemarkBuffer) line = line.substr(0, kRemarkBuffer);
    if (!IsBlankLine(line) && line.front() != '!') return;  // a data line: stay before it
    pos_ = end < text_.size() ? end + 1 : end;
  }
}

bool InputFile::NextItem(std::string_view& item) {
  while (pos_ < text_.size() && (IsSeparator(text_[pos_]) || text_[pos_] == '\n')) ++pos_;
  if (pos_ >= text_.size()) return false;
  const std::size_t start = pos_;
  while (pos_ < text_.size() && !IsSeparator(text_[pos_]) && text_[pos_] != '\n') ++pos_;
  item = std::string_view(text_.data() + start, pos_ - start);
  return true;
}

int InputFile::ItemsLeftOnLine() const {
  int items = 0;
  for (std::size_t at = pos_; at < text_.size() && text_[at] != '\n';) {
    if (IsSeparator(text_[at])) {
      ++at;
      continue;
    }
    if (text_[at] == '!') break;
    ++items;
    while (at < text_.size() && !IsSeparator(text_[at]) && text_[at] != '\n') ++at;
  }
  return items;
}

void InputFile::EndRead() {
  const std::size_t end = text_.find('\n', pos_);
  pos_ = end == std::string::npos ? text_.size() : end + 1;
}

int InputFile::LineNumber() const {
  return 1 + static_cast<int>(std::count(text_.begin(), text_.begin() + pos_, '\n'));
}

bool ParseInt(std::string_view item, int32_t& value) {
  std::size_t i = 0;
  bool negative = false;
  if (i < item.size() && (item[i] == '+' || item[i] == '-')) negative = item[i++] == '-';
  if (i == item.size()) return false;
  long long result = 0;
  for (; i < item.size(); ++i) {
    if (item[i] < '0' || item[i] > '9') return false;
    result = result * 10 + (item[i] - '0');
    if (result > 2147483648LL) return false;
  }
  if (negative) result = -result;
  if (result > std::numeric_limits<int32_t>::max()) return false;
  value = static_cast<int32_t>(result);
  return true;
}

bool ParseReal(std::string_view item, float& value) {
  // Accepted forms: optional sign, digits with an optional point, an optional exponent marked
  // by E, D or Q; also Inf, Infinity and NaN in any case.
  std::string text(item);
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::string rest = text.substr(i);
  for (char& c : rest) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (rest == "inf" || rest == "infinity" || rest == "nan") {
    value = rest == "nan" ? std::numeric_limits<float>::quiet_NaN()
                          : (text[0] == '-' ? -std::numeric_limits<float>::infinity()
                                            : std::numeric_limits<float>::infinity());
    return true;
  }
  std::size_t digits = 0;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) ++i, ++digits;
  }
  if (digits == 0) return false;
  if (i < text.size()) {
    char& marker = text[i];
    if (marker != 'e' && marker != 'E' && marker != 'd' && marker != 'D' && marker != 'q' &&
        marker != 'Q')
      return false;
    marker = 'e';
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t exp_digits = 0;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) ++i, ++exp_digits;
    if (exp_digits == 0 || i != text.size()) return false;
  }
  errno = 0;
  char* end = nullptr;
  // Always the "C" locale: a host that set a decimal comma must not change how a file reads.
  static const locale_t c_locale = ::newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  const float parsed = ::strtof_l(text.c_str(), &end, c_locale);
  if (end != text.c_str() + text.size()) return false;
  value = parsed;  // an overflow reads as an infinity, an underflow as zero
  return true;
}

bool ListRead::Int(int32_t& value) {
  std::string_view item;
  return file_.NextItem(item) && ParseInt(item, value);
}

bool ListRead::Real(float& value) {
  std::string_view item;
  return file_.NextItem(item) && ParseReal(item, value);
}

bool ListRead::Text(std::string& value, std::size_t width) {
  std::string_view item;
  if (!file_.NextItem(item)) return false;
  value = fmt::PadRight(item, width);
  return true;
}

}  // namespace gae
