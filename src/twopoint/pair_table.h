// A read-only view of pairwise records laid out as in the .LRD file: record K (1-based) holds
// `record_length` 32-bit words, the first two being the pair's first value (minus the LOD, or
// a distance in consensus maps) and its recombination frequency. The map engine reads every
// pair value through this view, whether the records lie in a mapped file or in memory.
#pragma once

#include <cstdint>
#include <limits>

#include "vocabulary/pair_index.h"
#include "twopoint/mapping_function.h"

namespace gae {

// Which pair value a stage minimises: 1 the first value (minus the LOD), 2 the recombination
// frequency, 3 the map distance from that frequency by the run's mapping function.
enum ByWhat : int { kByFirstValue = 1, kByRecFreq = 2, kByDistance = 3 };

struct PairTable {
  const float* records = nullptr;
  int64_t num_records = 0;
  int32_t record_length = 2;     // in 4-byte words
  int32_t mapping_function = 1;  // for kByDistance

  // i and j are 1-based marker numbers, i != j. A record beyond the store reads as NaN, which
  // never qualifies as linked and never wins a comparison.
  float Word(int64_t i, int64_t j, int word) const {
    const int64_t k = GroupPairIndex(i, j);
    if (k < 1 || k > num_records) return std::numeric_limits<float>::quiet_NaN();
    return records[(k - 1) * record_length + word];
  }
  float First(int64_t i, int64_t j) const { return Word(i, j, 0); }
  float Second(int64_t i, int64_t j) const { return Word(i, j, 1); }
  float Distance(int64_t i, int64_t j) const {
    return MapRecToDistance(mapping_function, Second(i, j));
  }
  float Value(int by_what, int64_t i, int64_t j) const {
    switch (by_what) {
      case kByFirstValue: return First(i, j);
      case kByRecFreq: return Second(i, j);
      default: return Distance(i, j);
    }
  }
};

}  // namespace gae
