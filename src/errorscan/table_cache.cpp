#include "errorscan/table_cache.h"

#include "errorscan/two_locus_probabilities.h"

namespace gae {

namespace {

// Beyond this many stored probabilities (64 MB) the cache starts afresh.
constexpr std::size_t kMaxFloats = std::size_t{16} << 20;

uint64_t Key(uint64_t a, uint64_t b, uint64_t c = 0) { return (a << 42) | (b << 21) | c; }

}  // namespace

void TableCache::MakeRoom(std::size_t floats) {
  if (stored_floats_ + floats <= kMaxFloats) return;
  pairs_.clear();
  triples_.clear();
  stored_floats_ = 0;
}

const std::vector<float>& TableCache::Pair(int32_t left, int32_t right) {
  const uint64_t key = Key(left, right);
  auto found = pairs_.find(key);
  if (found != pairs_.end()) return found->second;
  std::vector<float> table = TwoLocusProbabilities(model_.design, model_.type, model_.mapping_function,
                                                   positions_[left], positions_[right]);
  MakeRoom(table.size());
  stored_floats_ += table.size();
  return pairs_.emplace(key, std::move(table)).first->second;
}

const ThreeLocusTable& TableCache::Triple(int32_t left, int32_t middle, int32_t right) {
  const uint64_t key = Key(left, middle, right);
  auto found = triples_.find(key);
  if (found != triples_.end()) return found->second;
  ThreeLocusTable table = ThreeLocusProbabilities(model_.design, model_.type, model_.mapping_function,
                                                  positions_[left], positions_[middle], positions_[right]);
  MakeRoom(table.values.size());
  stored_floats_ += table.values.size();
  return triples_.emplace(key, std::move(table)).first->second;
}

}  // namespace gae
