#include "report/text_file.h"

#include <cstdio>

#include "frame/path_stem.h"

namespace gae {

bool WriteTextFile(const std::string& path, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && written;
}

std::string ResultStem(const std::string& input_path) {
  return PathStem(input_path).substr(0, 256);
}

}  // namespace gae
