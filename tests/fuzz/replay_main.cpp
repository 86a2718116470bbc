// Without libFuzzer (a GCC build): replays the given files, and every file of the given
// folders, through the same entry as the fuzz target, then mutates them at random for a few
// seconds (GAE_FUZZ_SECONDS, 3 by default; GAE_FUZZ_SEED fixes the draws). An input that
// crashes the process is left as fuzz-crash.bin in the folder the test runs in.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/fuzz_entry.h"
#include "fuzz/mutate.h"

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
  if (inputs.empty()) return 1;
  const std::string crash_file = std::string(::getcwd(nullptr, 0)) + "/fuzz-crash.bin";
  auto run = [&crash_file](const std::string& input) {
    // Kept before the run: if the process dies, the input that killed it is there.
    { std::ofstream(crash_file, std::ios::binary) << input; }
    gae::fuzz::RunOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
  };
  for (std::size_t k = 0; k < files.size(); ++k) run(inputs[k]);
  std::fprintf(stderr, "%zu inputs replayed\n", files.size());
  const char* seconds_text = std::getenv("GAE_FUZZ_SECONDS");
  const double seconds = seconds_text != nullptr ? std::atof(seconds_text) : 3.0;
  const char* seed_text = std::getenv("GAE_FUZZ_SEED");
  const uint64_t seed = seed_text != nullptr ? std::strtoull(seed_text, nullptr, 10) : std::random_device{}();
  std::mt19937_64 rng(seed);
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  long runs = 0;
  while (std::chrono::steady_clock::now() < end) {
    std::string input = inputs[std::uniform_int_distribution<std::size_t>(0, inputs.size() - 1)(rng)];
    const int mutations = 1 + static_cast<int>(rng() % 8);
    for (int m = 0; m < mutations; ++m) gae::fuzz::Mutate(input, inputs, rng);
    run(input);
    ++runs;
  }
  std::remove(crash_file.c_str());
  std::fprintf(stderr, "%ld mutated inputs run (seed %llu)\n", runs, static_cast<unsigned long long>(seed));
  return 0;
}
