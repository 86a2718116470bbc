// Wall-clock laps of a run's stages, for the time lines of a summary.
#pragma once

#include <chrono>

namespace gae {

class Stopwatch {
 public:
  // Seconds since the last lap (or since the watch was made).
  double Lap() {
    const auto now = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(now - last_).count();
    last_ = now;
    return seconds;
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

}  // namespace gae
