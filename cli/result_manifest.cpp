#include "result_manifest.h"

#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

#include "report/text_file.h"

namespace gaecli {

namespace {

// A file's identity for the list: its name (without the folder), size and modification time.
std::string Entry(const std::string& path, const struct stat& info) {
  const std::size_t slash = path.rfind('/');
  std::ostringstream line;
  line << (slash == std::string::npos ? path : path.substr(slash + 1)) << '\t' << info.st_size << '\t'
       << info.st_mtim.tv_sec << '.' << info.st_mtim.tv_nsec;
  return line.str();
}

std::set<std::string> ReadEntries(const std::string& list) {
  std::set<std::string> entries;
  std::ifstream in(list);
  std::string line;
  while (std::getline(in, line)) entries.insert(line);
  return entries;
}

}  // namespace

ResultManifest::ResultManifest(const std::string& input, std::vector<std::string> suffixes)
    : input_(input), stem_(gae::ResultStem(input)), suffixes_(std::move(suffixes)) {}

std::vector<std::string> ResultManifest::Foreign() const {
  const std::set<std::string> ours = ReadEntries(FileName());
  std::vector<std::string> foreign;
  for (const std::string& suffix : suffixes_) {
    const std::string path = stem_ + suffix;
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) continue;
    // The input itself is never written over: the library leaves it and says so.
    if (gae::SameFile(path, input_)) continue;
    if (!S_ISREG(info.st_mode) || ours.count(Entry(path, info)) == 0) foreign.push_back(path);
  }
  return foreign;
}

bool ResultManifest::Admit(bool overwrite) const {
  const std::vector<std::string> foreign = Foreign();
  if (foreign.empty() || overwrite) return true;
  for (const std::string& path : foreign)
    std::fprintf(stderr, "%s: a result of %s would replace this file, which gaengine did not write\n", path.c_str(),
                 input_.c_str());
  std::fprintf(stderr, "  hint: move the file away, or run again with --overwrite to replace it\n");
  return false;
}

bool ResultManifest::Record() const {
  // Entries of other results (another tool's run on the same stem) stay as they were.
  std::set<std::string> entries;
  for (const std::string& entry : ReadEntries(FileName())) {
    bool ours = false;
    for (const std::string& suffix : suffixes_) {
      const std::string path = stem_ + suffix;
      const std::size_t slash = path.rfind('/');
      ours = ours || entry.rfind((slash == std::string::npos ? path : path.substr(slash + 1)) + "\t", 0) == 0;
    }
    if (!ours) entries.insert(entry);
  }
  for (const std::string& suffix : suffixes_) {
    const std::string path = stem_ + suffix;
    struct stat info {};
    if (::lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && !gae::SameFile(path, input_))
      entries.insert(Entry(path, info));
  }
  std::string text;
  for (const std::string& entry : entries) text += entry + "\n";
  return gae::WriteTextFile(FileName(), text);
}

}  // namespace gaecli
