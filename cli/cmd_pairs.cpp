// gaengine pairs FILE [--markers]: check a MAP input file and compute its pairwise file, with a
// progress bar on standard error while the pairs are estimated.
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "gaengine.h"

namespace gaecli {

namespace {

long long FileSize(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 ? static_cast<long long>(info.st_size) : 0;
}

// The library writes records in order, so the size of the growing file tells the progress.
void ShowProgress(const std::string& lrd, long long expected_bytes, const std::atomic<bool>& done) {
  if (expected_bytes <= 0 || !::isatty(STDERR_FILENO)) return;
  while (!done.load()) {
    const double share = static_cast<double>(FileSize(lrd)) / static_cast<double>(expected_bytes);
    const int width = 40, filled = static_cast<int>(share * width + 0.5);
    std::fprintf(stderr, "\r[%s%s] %5.1f%%", std::string(filled, '#').c_str(),
                 std::string(width - filled, ' ').c_str(), 100.0 * share);
    std::fflush(stderr);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  std::fprintf(stderr, "\r%s\r", std::string(50, ' ').c_str());
}

std::string NameOf(const std::vector<int>& codes, int n, int i) {
  std::string name;
  for (int j = 0; j < 35; ++j) name += static_cast<char>(codes[static_cast<size_t>(j) * n + i]);
  return name.substr(0, name.find_last_not_of(' ') + 1);
}

}  // namespace

void RegisterPairsCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("pairs", "Check a MAP input file and compute its pairwise file");
  static std::string file;
  static bool show_markers = false;
  cmd->add_option("file", file, "MAP input file")->required();
  cmd->add_flag("--markers", show_markers, "Print the marker table");
  cmd->callback([&exit_code] {
    const PathArg path(file);
    int n = 0, status = 0;
    MAPFindNumMarkers(path.Len(), path.Data(), &n, &status);
    if (status != 0) {
      std::fprintf(stderr, "%s: not a valid MAP file (status %d, see MAP.log)\n", file.c_str(), status);
      exit_code = 1;
      return;
    }
    std::vector<int> names(static_cast<size_t>(n) * 35), anchor(n), a(n), h(n), b(n), x(n), category(n);
    std::vector<float> chi(n), p(n);
    const std::string lrd = file.substr(0, file.size() > 4 ? file.size() - 4 : 0) + ".LRD";
    const long long expected = 8LL * n * (n - 1) / 2;
    std::atomic<bool> done{false};
    std::thread progress(ShowProgress, lrd, expected, std::cref(done));
    CheckErrorMAP(path.Len(), path.Data(), n, names.data(), anchor.data(), a.data(), h.data(),
                  b.data(), x.data(), category.data(), chi.data(), p.data(), &status);
    done = true;
    progress.join();
    if (status != 0) {
      std::fprintf(stderr, "%s: check failed with status %d (see MAP.log)\n", file.c_str(), status);
      exit_code = 1;
      return;
    }
    std::printf("%d markers, %lld pairs in %s\n", n, static_cast<long long>(n) * (n - 1) / 2, lrd.c_str());
    if (show_markers) {
      std::printf("%-20s %6s %6s %6s %6s %8s %12s %10s\n", "Marker", "A/D", "H", "B/R", "X",
                  "Category", "Chi-square", "Pr>ChiSq");
      for (int i = 0; i < n; ++i) {
        std::printf("%-20s %6d %6d %6d %6d %8d %12.4f %10.4f\n", NameOf(names, n, i).c_str(), a[i],
                    h[i], b[i], x[i], category[i], chi[i], p[i]);
      }
    }
    exit_code = 0;
  });
}

}  // namespace gaecli
