#include "report/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "vocabulary/path_stem.h"

namespace gae {

namespace {

bool WriteAll(int fd, std::string_view text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

// Written whole under another name, then renamed: a reader never meets half a report, a full
// disk leaves the old file as it was, and a link or a pipe at the name is replaced, never followed.
FileReplacement::FileReplacement(std::string path) : path_(std::move(path)), part_(TemporaryName(path_)) {
  fd_ = ::open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  ok_ = created_ = fd_ >= 0;
}

FileReplacement::~FileReplacement() {
  if (fd_ >= 0) ::close(fd_);
  if (created_ && !committed_) std::remove(part_.c_str());
}

bool FileReplacement::Append(std::string_view text) {
  ok_ = ok_ && WriteAll(fd_, text);
  return ok_;
}

bool FileReplacement::Commit() {
  if (fd_ >= 0) ok_ = (::close(fd_) == 0) && ok_;
  fd_ = -1;
  ok_ = ok_ && std::rename(part_.c_str(), path_.c_str()) == 0;
  committed_ = ok_;
  return ok_;
}

bool WriteTextFile(const std::string& path, const std::string& text) {
  FileReplacement file(path);
  return file.Append(text) && file.Commit();
}

bool FolderTakesFiles(const std::string& path) {
  const std::string probe = TemporaryName(path);
  const int fd = ::open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  ::close(fd);
  std::remove(probe.c_str());
  return true;
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
  if (!WriteTextFile(path, text)) {
    failed_.push_back(path);
    return false;
  }
  written_.push_back(path);
  return true;
}

std::string ResultStem(const std::string& input_path) {
  return PathStem(input_path).substr(0, 256);
}

}  // namespace gae
