#include "run_guard.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include <CLI/CLI.hpp>

#include "report/text_file.h"
#include "vocabulary/frame_codes.h"
#include "vocabulary/message_code.h"
#include "library_output.h"
#include "result_manifest.h"
#include "twopoint/pair_store_writer.h"
#include "vocabulary/path_stem.h"

namespace gaecli {

namespace {

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

std::string StemProblem(const std::string& input) {
  const std::string stem = gae::PathStem(input);
  const std::string kept = gae::ResultStem(input);
  if (kept.size() < stem.size())
    return "the name is " + std::to_string(input.size()) + " characters long: result names keep only the first " +
           std::to_string(kept.size()) + " characters of \"" + stem.substr(0, 20) +
           "...\" and would land elsewhere; move or rename the file to a shorter path";
  if (FolderOf(kept + ".sum") != FolderOf(input))
    return "the result names (the file name less its last four characters) would lie outside its folder; give the "
           "file an extension such as .map";
  return "";
}

PairFileLock::~PairFileLock() {
  if (fd_ >= 0) ::close(fd_);
}

bool PairFileLock::Take(const std::string& lrd_path, bool wait) {
  const std::string name = lrd_path + ".lock";
  fd_ = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (fd_ < 0) {
    std::fprintf(stderr, "cannot lock %s: cannot open %s\n", lrd_path.c_str(), name.c_str());
    return false;
  }
  if (::flock(fd_, LOCK_EX | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK) {
    std::fprintf(stderr, "cannot lock %s\n", lrd_path.c_str());
    return false;
  }
  if (!wait) {
    std::fprintf(stderr, "another run is using %s; not waiting for it (--no-wait)\n", lrd_path.c_str());
    return false;
  }
  std::fprintf(stderr, "waiting for another run that is using %s ...\n", lrd_path.c_str());
  while (::flock(fd_, LOCK_EX) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

bool DeclaredSizeFits(const std::string& file, long long declared, const char* what) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0) return true;  // the library says what is wrong
  const long long room = static_cast<long long>(info.st_size) / 2;
  if (declared <= room) return true;
  std::fprintf(stderr, "%s: the header declares %lld %s, more than the file's %lld bytes can hold\n", file.c_str(),
               declared, what, static_cast<long long>(info.st_size));
  return false;
}

RunScope::~RunScope() {
  if (begun_ && !ResultManifest(input_, suffixes_).Record())
    std::fprintf(stderr, "cannot write %s\n", ResultManifest(input_, suffixes_).FileName().c_str());
}

bool RunScope::Begin(const std::string& input, const std::vector<std::string>& suffixes) {
  if (const std::string problem = StemProblem(input); !problem.empty()) {
    std::fprintf(stderr, "%s: %s\n", input.c_str(), problem.c_str());
    return false;
  }
  if (!lock_.Take(gae::PairStoreName(input), !Guard().no_wait)) return false;
  // The pairwise file is not checked here: its fingerprint says whether it may be used.
  for (const std::string& suffix : suffixes)
    if (suffix != ".LRD") suffixes_.push_back(suffix);
  input_ = input;
  if (!ResultManifest(input_, suffixes_).Admit(Guard().overwrite)) return false;
  begun_ = true;
  return true;
}

bool ResultsWritten(const std::string& input, std::string_view tool_letters) {
  if (gae::MessageCode() != gae::kEntryFailed) return true;
  std::fprintf(stderr, "%s: a result file could not be written completely (a full disk?); %.*s.log names it\n",
               input.c_str(), static_cast<int>(tool_letters.size()), tool_letters.data());
  // The library's 1101 lines that name a file rather than an export.
  const std::string& said = LibraryTranscript();
  const std::string mark = "DLL name=";
  for (std::size_t at = said.find(mark); at != std::string::npos; at = said.find(mark, at + 1)) {
    const std::size_t from = at + mark.size(), end = said.find('\n', from);
    const std::string name = said.substr(from, end == std::string::npos ? std::string::npos : end - from);
    if (name.rfind("DLL ", 0) != 0) std::fprintf(stderr, "  not written: %s\n", name.c_str());
  }
  return false;
}

void RegisterGuardOptions(CLI::App& cmd) {
  cmd.add_flag("--no-wait", Guard().no_wait,
               "When another run is using the same pairwise file (.LRD), stop at once instead of waiting for it");
  cmd.add_flag("--overwrite", Guard().overwrite,
               "Replace result files that gaengine did not write (such as your own .cdq beside a .cdm)");
}

GuardOptions& Guard() {
  static GuardOptions options;
  return options;
}

}  // namespace gaecli
