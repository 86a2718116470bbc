// Without libFuzzer (a GCC build): replays the given files, and every file of the given
// folders, through the same entry as the fuzz target. Exit status 0 when all ran.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_entry.h"

namespace {

void Collect(const std::string& path, std::vector<std::string>& files) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return;
  if (S_ISREG(info.st_mode)) {
    files.push_back(path);
  } else if (S_ISDIR(info.st_mode)) {
    if (DIR* dir = ::opendir(path.c_str())) {
      while (const dirent* entry = ::readdir(dir))
        if (entry->d_name[0] != '.') Collect(path + "/" + entry->d_name, files);
      ::closedir(dir);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> files;
  for (int k = 1; k < argc; ++k) Collect(argv[k], files);
  // Read first: the entry works in a scratch folder of its own, where relative paths fail.
  std::vector<std::string> inputs;
  for (const std::string& file : files) {
    std::ifstream in(file, std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  for (std::size_t k = 0; k < files.size(); ++k) {
    gae::fuzz::RunOneInput(reinterpret_cast<const uint8_t*>(inputs[k].data()), inputs[k].size());
    std::fprintf(stderr, "replayed %s (%zu bytes)\n", files[k].c_str(), inputs[k].size());
  }
  std::fprintf(stderr, "%zu inputs replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
