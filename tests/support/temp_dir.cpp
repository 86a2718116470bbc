#include "support/temp_dir.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "vocabulary/fixed_format.h"
#include "frame/process_state.h"

namespace gae::testing {

void InTempDir::SetUp() {
  char templ[] = "/tmp/gaengine-test-XXXXXX";
  ASSERT_NE(::mkdtemp(templ), nullptr);
  dir_ = templ;
  previous_ = std::filesystem::current_path().string();
  std::filesystem::current_path(dir_);
  ResetProcessStateForTesting();
}

void InTempDir::TearDown() {
  ResetProcessStateForTesting();
  std::filesystem::current_path(previous_);
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

std::vector<std::string> ReadLines(const std::string& path) { return SplitLines(ReadText(path)); }

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool FileExists(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

std::string SourcePath(const std::string& relative) {
  return std::string(GAE_SOURCE_DIR) + "/" + relative;
}

std::vector<std::pair<int, std::string>> SumMapRows(const std::string& path) {
  std::vector<std::pair<int, std::string>> rows;
  const std::vector<std::string> lines = ReadLines(path);
  for (size_t k = 1; k < lines.size() && !lines[k].empty(); ++k)
    rows.push_back({std::stoi(lines[k].substr(0, 20)), fmt::Trim(lines[k].substr(41, 19))});
  return rows;
}

std::map<std::string, std::vector<std::string>> MarkerRowCells(const std::string& path, int individuals) {
  std::map<std::string, std::vector<std::string>> rows;
  for (const std::string& line : ReadLines(path)) {
    if (line.empty() || line[0] == '!') continue;
    std::istringstream in(line);
    std::vector<std::string> tokens;
    for (std::string t; in >> t;) tokens.push_back(t);
    if (static_cast<int>(tokens.size()) == individuals + 2)
      rows[tokens[1]] = std::vector<std::string>(tokens.begin() + 2, tokens.end());
  }
  return rows;
}

}  // namespace gae::testing
