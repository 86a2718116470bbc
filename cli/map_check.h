// The checks of the map tools as the `pairs` and `map` commands run them: CheckErrorMAP or
// CheckErrorCDM with a progress bar on standard error while the pairwise file grows.
#pragma once

#include <atomic>
#include <string>
#include <thread>
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

// A progress bar on standard error (at a terminal only) while a pairwise file grows towards its
// size: the writers put the records in order, so the size is the progress.
class PairProgress {
 public:
  PairProgress() = default;
  PairProgress(const PairProgress&) = delete;
  PairProgress& operator=(const PairProgress&) = delete;
  ~PairProgress() { Stop(); }
  void Start(const std::string& lrd, long long expected_bytes);
  void Stop();

 private:
  static void Show(const std::string& lrd, long long expected_bytes, const std::atomic<bool>& done);
  std::atomic<bool> done_{true};
  std::thread thread_;
};

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

// False, with the reason on standard error, when the header of a MAP, CDM or PLM file (by its
// tool code) declares more markers than the file can hold: refused before anything is allocated.
bool DeclaredMarkersFit(const std::string& path, int tool_code);

}  // namespace gaecli
