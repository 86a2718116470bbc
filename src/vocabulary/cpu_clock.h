#pragma once

#include <ctime>

namespace gae {

// The process's CPU time in seconds, as the single-precision value the time lines print.
inline float CpuSeconds() {
  return static_cast<float>(static_cast<double>(std::clock()) / CLOCKS_PER_SEC);
}

}  // namespace gae
