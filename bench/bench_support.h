// Helpers shared by the benchmark programs.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

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

}  // namespace gae::bench
