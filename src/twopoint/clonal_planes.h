// Clonal genotypes as bit planes: for each marker, one bit per individual for each allele of
// each parent (first parent A or B, second parent C or D). The sixteen cells of a marker pair
// are then sixteen popcounts of ANDed planes, a few hundred word operations for 300
// individuals instead of a pass over them.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

class ClonalPlanes {
 public:
  // `types` holds `num_individuals` letters per marker, markers one after another (letters as
  // ClonalClass reads them; any other letter is missing and sets no bit).
  ClonalPlanes(const char* types, int64_t num_markers, int64_t num_individuals);

  // The cells N1..N16 of markers `first` and `second` (1-based), as CDMPairCounts gives them.
  void Count(int64_t first, int64_t second, float cells[16]) const;

 private:
  // Plane 0: first parent's A, 1: its B, 2: second parent's C, 3: its D.
  const uint64_t* Plane(int64_t marker, int plane) const {
    return bits_.data() + ((marker - 1) * 4 + plane) * words_;
  }
  int64_t words_;
  std::vector<uint64_t> bits_;
};

}  // namespace gae
