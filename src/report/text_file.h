#pragma once

#include <string>
#include <vector>

namespace gae {

// Replaces `path` with `text`. False when the file cannot be written.
bool WriteTextFile(const std::string& path, const std::string& text);

// Whether two paths name one existing file (the same device and file number), however they
// are spelled.
bool SameFile(const std::string& a, const std::string& b);

// The result files of one input, each named its stem plus a suffix. A result whose name is
// the input file itself (an input called cross.mtp meets its own .mtp report) is not written:
// it is listed in `Skipped()` for the caller to report, and the input stays as it was.
class ResultFiles {
 public:
  explicit ResultFiles(std::string input_path);
  const std::string& Stem() const { return stem_; }
  // Writes Stem() + `suffix`. False when it is not written.
  bool Write(const std::string& suffix, const std::string& text);
  const std::vector<std::string>& Skipped() const { return skipped_; }
  // The paths written, in the order they were.
  const std::vector<std::string>& Written() const { return written_; }

 private:
  std::string input_path_;
  std::string stem_;
  std::vector<std::string> skipped_;
  std::vector<std::string> written_;
};

// The stem of every result file: the input path less its last four characters (its
// extension), at most 256 characters.
std::string ResultStem(const std::string& input_path);

}  // namespace gae
