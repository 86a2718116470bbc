#pragma once

#include <string>
#include <vector>

namespace gae {

// Replaces `path` with `text`. False when the file cannot be written.
bool WriteTextFile(const std::string& path, const std::string& text);

// Whether two paths name one existing file (the same device and file number), however they
// are spelled.
bool SameFile(const std::string& a, const std::string& b);

// Writes the result files of one input. A result whose name is the input file itself (an
// input called cross.mtp meets its own .mtp report) is not written: it is listed in `skipped`
// for the caller to report, and the input stays as it was.
struct ResultFiles {
  std::string input_path;
  std::vector<std::string> skipped;
  bool Write(const std::string& path, const std::string& text);
};

// The stem of every result file: the input path less its last four characters (its
// extension), at most 256 characters.
std::string ResultStem(const std::string& input_path);

}  // namespace gae
