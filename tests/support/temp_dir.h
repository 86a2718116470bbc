// Tests run in their own temporary folder: the logs and result files land in the current
// working directory, and each test starts from a fresh process state.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace gae::testing {

class InTempDir : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  const std::string& Dir() const { return dir_; }

 private:
  std::string dir_;
  std::string previous_;
};

void WriteText(const std::string& path, const std::string& text);
std::string ReadText(const std::string& path);
std::vector<std::string> ReadLines(const std::string& path);
// A text cut at its line ends, as ReadLines reads a file.
std::vector<std::string> SplitLines(const std::string& text);
bool FileExists(const std::string& path);
// The path of a file of the source tree, e.g. "examples/clonal_f1.cdm".
std::string SourcePath(const std::string& relative);
// The map section of a written .sum: (chromosome number, trimmed marker name) in map order.
std::vector<std::pair<int, std::string>> SumMapRows(const std::string& path);
// The marker rows of a written input file (category, name, one cell per individual): the
// cells by marker name. Rows of another length (chromosomes, positions, anchors) are passed over.
std::map<std::string, std::vector<std::string>> MarkerRowCells(const std::string& path, int individuals);

}  // namespace gae::testing
