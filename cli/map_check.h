// The MAP check as both the `pairs` and the `map` commands run it: CheckErrorMAP with a
// progress bar on standard error while the pairwise file grows.
#pragma once

#include <string>
#include <vector>

namespace gaecli {

struct MarkerTable {
  int num_markers = 0;
  std::vector<int> name_codes, anchor, size_a, size_h, size_b, size_x, category;
  std::vector<float> chi_square, probability;
  std::string Name(int i) const;  // trailing blanks dropped
};

// MAPFindNumMarkers, then CheckErrorMAP. Returns the Status of the first that fails, or 0.
int CheckMapFile(const std::string& path, MarkerTable& table);
// PLMFindNumMarkers, then CheckErrorPLM; the founder counts are not kept (size_x is).
int CheckPlmFile(const std::string& path, MarkerTable& table);

}  // namespace gaecli
