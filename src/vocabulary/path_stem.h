// The stem that the pairwise file and every result file of an input file are named by.
#pragma once

#include <string>

namespace gae {

// The path less its last four characters (its extension); empty for a path of four characters
// or fewer.
inline std::string PathStem(const std::string& path) {
  return path.substr(0, path.size() > 4 ? path.size() - 4 : 0);
}

}  // namespace gae
