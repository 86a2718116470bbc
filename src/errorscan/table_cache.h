// Probability tables of the markers of one map, built once for each marker pair or triple
// that asks for them. Imputation and the error scan visit the same intervals for every
// individual, and an inbred or pure-line table takes tens of thousands of operations.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "errorscan/population_states.h"
#include "errorscan/three_locus_probabilities.h"

namespace gae {

class TableCache {
 public:
  // `positions`: cM of every linked marker in map order; markers are named by their index.
  TableCache(const PopulationModel& model, std::span<const float> positions)
      : model_(model), positions_(positions) {}

  // The references stay valid until the next call.
  const std::vector<float>& Pair(int32_t left, int32_t right);
  const ThreeLocusTable& Triple(int32_t left, int32_t middle, int32_t right);

 private:
  void MakeRoom(std::size_t floats);

  PopulationModel model_;
  std::span<const float> positions_;
  std::unordered_map<uint64_t, std::vector<float>> pairs_;
  std::unordered_map<uint64_t, ThreeLocusTable> triples_;
  std::size_t stored_floats_ = 0;
};

}  // namespace gae
