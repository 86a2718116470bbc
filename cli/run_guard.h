// What the command makes sure of before a run touches a folder: result names that stay in the
// input's folder, one run at a time per pairwise file, and sizes a file can really hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace gaecli {

// Why the result names of `input` would not be what they seem: a stem the library cuts (over
// 256 characters), so that results land under a shorter name, perhaps in a parent folder; or a
// stem that lies outside the input's folder. Empty when they are fine.
std::string StemProblem(const std::string& input);

// Holds the lock beside a pairwise file for the life of the object: a second run on the same
// file waits for the first, or with `wait` false is refused.
class PairFileLock {
 public:
  PairFileLock() = default;
  PairFileLock(const PairFileLock&) = delete;
  PairFileLock& operator=(const PairFileLock&) = delete;
  ~PairFileLock();
  // False (after a line on standard error) when the lock cannot be had.
  bool Take(const std::string& lrd_path, bool wait);

 private:
  int fd_ = -1;
};

// Whether `declared` items (markers, traits) can stand in `file`: each takes at least two
// bytes (a name and a separator). False, with the reason on standard error, when not; a file
// that declares 300 million markers in six lines is refused before anything is allocated.
bool DeclaredSizeFits(const std::string& file, long long declared, const char* what);
// The status a check returns when the command itself refused the file and has said why.
constexpr int kRefusedByCommand = -1;

// One map run's hold on its folder, from before the first file is read until its end: the
// stem is checked, the pairwise file locked and the result names admitted; at the end (however
// the run ends) the files it wrote are listed as its own.
class RunScope {
 public:
  RunScope() = default;
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;
  ~RunScope();
  // `suffixes` are the run's result names after the stem. False, with the reason on standard
  // error, when the run must not start.
  bool Begin(const std::string& input, const std::vector<std::string>& suffixes);

 private:
  PairFileLock lock_;
  std::string input_;
  std::vector<std::string> suffixes_;
  bool begun_ = false;
};

// After an output export: false, with the reason on standard error, when the library could not
// write a result completely (it then leaves the catalogue's 1101 and names the file in the
// tool's log).
bool ResultsWritten(const std::string& input, std::string_view tool_letters);

// The options every map run shares: whether to wait for another run, and whether result
// files that this command did not write may be replaced.
struct GuardOptions {
  bool no_wait = false;
  bool overwrite = false;
};
GuardOptions& Guard();
void RegisterGuardOptions(CLI::App& cmd);

}  // namespace gaecli
