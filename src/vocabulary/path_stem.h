// The stem that the pairwise file and every result file of an input file are named by.
#pragma once

#include <unistd.h>

#include <atomic>
#include <string>

namespace gae {

// The path less its last four characters (its extension); empty for a path of four characters
// or fewer.
inline std::string PathStem(const std::string& path) {
  return path.substr(0, path.size() > 4 ? path.size() - 4 : 0);
}

// The name a file is written under, beside `path`, before it is renamed to `path` whole.
// Unique within the process and among processes, so that two runs never share one.
inline std::string TemporaryName(const std::string& path) {
  static std::atomic<unsigned> serial{0};
  return path + ".part" + std::to_string(::getpid()) + "_" + std::to_string(serial++);
}

}  // namespace gae
