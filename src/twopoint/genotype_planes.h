// Marker genotypes as bit planes, one bit per individual, so that the 3 x 3 table of a marker
// pair costs a few dozen AND and popcount operations instead of a pass over the individuals.
//
// Each marker has three planes: its first class (letter A), its middle class (H, and the
// partial classes D and R, which share the middle row of a pair table) and its last class (B).
// Any other letter is missing and sets no bit.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

class GenotypePlanes {
 public:
  // `types` holds `num_individuals` letters per marker, markers one after another.
  GenotypePlanes(const char* types, int64_t num_markers, int64_t num_individuals);

  int64_t NumMarkers() const { return num_markers_; }
  // The nine cells N1..N9 (row by row) of markers `row_marker` and `column_marker`, 1-based:
  // the row comes from the first marker's class, the column from the second's.
  void Count(int64_t row_marker, int64_t column_marker, float cells[9]) const;

 private:
  const uint64_t* Plane(int64_t marker, int cls) const {
    return bits_.data() + ((marker - 1) * 3 + cls) * words_;
  }
  int64_t num_markers_;
  int64_t words_;
  std::vector<uint64_t> bits_;
};

}  // namespace gae
