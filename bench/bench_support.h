// Helpers shared by the benchmark programs.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace gae::bench {

// The library writes its catalogue lines to standard output; inside a benchmark they would
// break up the results table.
class QuietStdout {
 public:
  QuietStdout() : saved_(::dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, STDOUT_FILENO);
    ::close(null);
  }
  ~QuietStdout() {
    std::fflush(stdout);
    ::dup2(saved_, STDOUT_FILENO);
    ::close(saved_);
  }
  QuietStdout(const QuietStdout&) = delete;
  QuietStdout& operator=(const QuietStdout&) = delete;

 private:
  int saved_;
};

// Markers spread evenly over ten chromosomes of 150 cM, genotypes bred as in an F2.
inline std::string WriteF2File(int markers, int individuals) {
  const std::string path = "/tmp/gaengine-bench-f2-" + std::to_string(markers) + ".map";
  std::FILE* f = std::fopen(path.c_str(), "w");
  std::fprintf(f, "7\n1\n1\n%d\n%d\n", markers, individuals);
  std::mt19937_64 rng(markers);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const int per_chromosome = (markers + 9) / 10;
  const double step = 150.0 / per_chromosome;
  const double r = 0.5 * (1.0 - std::exp(-2.0 * step / 100.0));
  std::vector<std::vector<int>> origin(individuals, std::vector<int>(2));
  for (int m = 0; m < markers; ++m) {
    std::fprintf(f, "M%06d", m + 1);
    for (int i = 0; i < individuals; ++i) {
      for (int& o : origin[i]) o = (m % per_chromosome == 0) ? (unit(rng) < 0.5) : (unit(rng) < r ? 1 - o : o);
      const int p1 = (origin[i][0] == 0) + (origin[i][1] == 0);
      std::fprintf(f, " %c", unit(rng) < 0.03 ? 'X' : "BHA"[p1]);
    }
    std::fprintf(f, "\n");
  }
  for (int m = 0; m < markers; ++m) std::fprintf(f, "M%06d 0\n", m + 1);
  std::fclose(f);
  return path;
}

}  // namespace gae::bench
