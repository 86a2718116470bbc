#include "report/text_file.h"

#include <sys/stat.h>

#include <cstdio>
#include <utility>

#include "vocabulary/path_stem.h"

namespace gae {

bool WriteTextFile(const std::string& path, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && written;
}

bool SameFile(const std::string& a, const std::string& b) {
  struct stat first {}, second {};
  if (::stat(a.c_str(), &first) != 0 || ::stat(b.c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

ResultFiles::ResultFiles(std::string input_path)
    : input_path_(std::move(input_path)), stem_(ResultStem(input_path_)) {}

bool ResultFiles::Write(const std::string& suffix, const std::string& text) {
  const std::string path = stem_ + suffix;
  if (SameFile(path, input_path_)) {
    skipped_.push_back(path);
    return false;
  }
  if (!WriteTextFile(path, text)) return false;
  written_.push_back(path);
  return true;
}

std::string ResultStem(const std::string& input_path) {
  return PathStem(input_path).substr(0, 256);
}

}  // namespace gae
