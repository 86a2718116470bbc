#include "report/text_file.h"

#include <algorithm>
#include <cstdio>

namespace gae {

bool WriteTextFile(const std::string& path, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && written;
}

std::string ResultStem(const std::string& input_path) {
  const std::size_t keep = input_path.size() > 4 ? input_path.size() - 4 : 0;
  return input_path.substr(0, std::min<std::size_t>(keep, 256));
}

}  // namespace gae
