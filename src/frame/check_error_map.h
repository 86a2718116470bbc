#pragma once

#include <cstdint>
#include <string>

namespace gae {

// Caller-owned arrays of the MAP check, each of extent `num_markers` (names: 35 per marker,
// the marker index running fastest).
struct MapCheckArrays {
  int num_markers = 0;
  int* name_codes = nullptr;
  int* anchor = nullptr;
  int* size_a = nullptr;  // A and D after folding
  int* size_h = nullptr;
  int* size_b = nullptr;  // B and R after folding
  int* size_x = nullptr;
  int* category = nullptr;
  float* chi_square = nullptr;
  float* probability = nullptr;
};

struct MapToolInput;

// Writes (or reuses) the pairwise file of the markers of a MAP input file read in full, beside
// the file at `path`. False when it cannot be written. Pairs stored as unlinked for want of an
// estimate are counted in one warning line (2806).
bool WriteMapPairwiseFile(const std::string& path, const MapToolInput& data, int threads);

// Validates a MAP input file, fills the caller's arrays and writes (or reuses) the pairwise
// file beside it. `threads` estimates pairs on that many cores.
void CheckErrorMapEntry(int path_len, const char* path, const MapCheckArrays& out, int* status,
                        int threads);

}  // namespace gae
