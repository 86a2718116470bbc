// The checks of the map tools as the `pairs` and `map` commands run them: CheckErrorMAP or
// CheckErrorCDM with a progress bar on standard error while the pairwise file grows.
#pragma once

#include <string>
#include <vector>

namespace gaecli {

struct MarkerTable {
  int num_markers = 0;
  std::vector<int> name_codes, anchor, size_a, size_h, size_b, size_x, category;
  // A clonal F1 or double cross: the counts of its twelve types, AC, AD, ... BB, XX.
  std::vector<std::vector<int>> clonal_sizes;
  std::vector<float> chi_square, probability;
  std::string Name(int i) const;  // trailing blanks dropped
};

// The checks below clear a pair file left by other data or by the other estimator, and with
// the exact estimator (the default; Settings().front_end asks for the desktop program's) write
// it before the export, which then reuses it.
// MAPFindNumMarkers, then CheckErrorMAP. Returns the Status of the first that fails, or 0.
int CheckMapFile(const std::string& path, MarkerTable& table);
// CDMFindNumMarkers, then CheckErrorCDM, the same way.
int CheckCdmFile(const std::string& path, MarkerTable& table);
// PLMFindNumMarkers, then CheckErrorPLM; the founder counts are not kept (size_x is).
int CheckPlmFile(const std::string& path, MarkerTable& table);
// The check of the tool of `tool_code` (104, 20 or 30).
int CheckToolFile(const std::string& path, int tool_code, MarkerTable& table);

// Clears a stale pair file of a genotype input and, for the exact estimator, writes it; returns
// the fingerprint to record once the check has passed (see RecordPairFileSource).
std::string PreparePairFile(const std::string& path, int tool_code);

}  // namespace gaecli
