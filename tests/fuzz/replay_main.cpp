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

// Values that sit on the edges of what the readers take.
const char* const kEdgeTokens[] = {"0", "-1", "1", "2147483647", "-2147483648", "NaN", "Inf", "1e39", "-0.0",
                                   "9999999999", "X", "ABCD", "!", "", "300000000"};

// One mutation of `text`: a byte changed, inserted or dropped, a stretch repeated or cut, a
// token replaced by an edge value, or the tail of another input spliced on.
void Mutate(std::string& text, const std::vector<std::string>& pool, std::mt19937_64& rng) {
  auto pick = [&rng](std::size_t n) { return n == 0 ? std::size_t{0} : std::uniform_int_distribution<std::size_t>(0, n - 1)(rng); };
  const std::size_t at = pick(text.size() + 1);
  switch (pick(7)) {
    case 0:
      if (!text.empty()) text[pick(text.size())] = static_cast<char>(pick(256));
      break;
    case 1:
      text.insert(at, 1, "0123456789 \n.-+eEXABHDR!"[pick(24)]);
      break;
    case 2:
      if (!text.empty()) text.erase(pick(text.size()), 1 + pick(16));
      break;
    case 3: {
      const std::size_t from = pick(text.size() + 1), length = pick(200);
      text.insert(at, text.substr(from, length));
      break;
    }
    case 4: {  // a whitespace-delimited token becomes an edge value
      std::size_t begin = text.find_first_not_of(" \t\n\r", at);
      if (begin == std::string::npos) break;
      const std::size_t end = text.find_first_of(" \t\n\r", begin);
      text.replace(begin, (end == std::string::npos ? text.size() : end) - begin, kEdgeTokens[pick(std::size(kEdgeTokens))]);
      break;
    }
    case 5:
      text.resize(at);
      break;
    default: {
      const std::string& other = pool[pick(pool.size())];
      text = text.substr(0, at) + other.substr(pick(other.size() + 1));
      break;
    }
  }
  if (text.size() > (1u << 20)) text.resize(1u << 20);
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
    for (int m = 0; m < mutations; ++m) Mutate(input, inputs, rng);
    run(input);
    ++runs;
  }
  std::remove(crash_file.c_str());
  std::fprintf(stderr, "%ld mutated inputs run (seed %llu)\n", runs, static_cast<unsigned long long>(seed));
  return 0;
}
