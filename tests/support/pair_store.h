// Pair records held in memory, laid out as in the pairwise file: two words a pair (minus the
// LOD, the frequency), pair (i, j) at record GroupPairIndex(i, j).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae::testing {

struct MemoryStore {
  MemoryStore() = default;
  explicit MemoryStore(int32_t num_markers);  // every record 0

  int32_t markers = 0;
  std::vector<float> records;

  PairTable Table(int mapping_function = 1) const {
    return PairTable{records.data(), static_cast<int64_t>(records.size() / 2), 2, mapping_function};
  }
  float& First(int32_t i, int32_t j);
  float& Second(int32_t i, int32_t j);
  float First(int32_t i, int32_t j) const { return const_cast<MemoryStore*>(this)->First(i, j); }
  float Second(int32_t i, int32_t j) const { return const_cast<MemoryStore*>(this)->Second(i, j); }
  void Set(int32_t i, int32_t j, float lod, float r) {
    First(i, j) = -lod;
    Second(i, j) = r;
  }
  // The records as a pairwise file.
  void Write(const std::string& path) const;
};

// Writes the store as a pairwise file and points the process at it, as a CheckError would.
void UseStoreFile(const MemoryStore& store, const std::string& path, int mapping_function = 1);

}  // namespace gae::testing
