#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gae {

// Replaces `path` with `text`, written whole under a temporary name first. False when the
// file cannot be written completely; the old file, if any, then stays as it was.
bool WriteTextFile(const std::string& path, const std::string& text);

// A file written in pieces under a temporary name and put in place whole by Commit(), for a
// result too large to build as one text. Uncommitted, it leaves the old file as it was.
class FileReplacement {
 public:
  explicit FileReplacement(std::string path);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();
  bool Append(std::string_view text);
  // False when any piece could not be written or the file not put in place.
  bool Commit();

 private:
  std::string path_, part_;
  int fd_ = -1;
  bool ok_ = false, created_ = false, committed_ = false;
};

// Whether a new file can be made beside `path` (whose folder must exist): false in a read-only
// folder or file system.
bool FolderTakesFiles(const std::string& path);

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
  // Results that could not be written completely (a full disk, a folder made read-only).
  const std::vector<std::string>& Failed() const { return failed_; }

 private:
  std::string input_path_;
  std::string stem_;
  std::vector<std::string> skipped_;
  std::vector<std::string> written_;
  std::vector<std::string> failed_;
};

// The stem of every result file: the input path less its last four characters (its
// extension), at most 256 characters.
std::string ResultStem(const std::string& input_path);

}  // namespace gae
