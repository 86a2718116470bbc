#include "support/pair_store.h"

#include <cstdio>

#include "vocabulary/pair_index.h"
#include "frame/process_state.h"

namespace gae::testing {

MemoryStore::MemoryStore(int32_t num_markers)
    : markers(num_markers), records(static_cast<std::size_t>(2 * PairCount(num_markers)), 0.0f) {}

float& MemoryStore::First(int32_t i, int32_t j) {
  return records[static_cast<std::size_t>(2 * (GroupPairIndex(i, j) - 1))];
}
float& MemoryStore::Second(int32_t i, int32_t j) {
  return records[static_cast<std::size_t>(2 * (GroupPairIndex(i, j) - 1) + 1)];
}

void MemoryStore::Write(const std::string& path) const {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  std::fwrite(records.data(), sizeof(float), records.size(), f);
  std::fclose(f);
}

void UseStoreFile(const MemoryStore& store, const std::string& path, int mapping_function) {
  store.Write(path);
  PairStoreSettings& settings = Process().pair_store;
  settings.lrd_name = path;
  settings.record_length = 2;
  settings.mapping_function = mapping_function;
}

}  // namespace gae::testing
