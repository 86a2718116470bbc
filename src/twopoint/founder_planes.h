// Pure-line genotypes as bit planes, one plane per founder letter and one bit per line, so that
// the count of an observed class of a marker pair is one AND and popcount per 64 lines.
#pragma once

#include <cstdint>
#include <vector>

namespace gae {

class FounderPlanes {
 public:
  // `types` holds `num_individuals` letters per marker, markers one after another. Letters A
  // to the founder count's last letter set their plane's bit; any other letter is missing.
  FounderPlanes(const char* types, int64_t num_markers, int64_t num_individuals, int founders);

  int Founders() const { return founders_; }
  // Lines that show founder `a` at marker `first` and founder `b` at marker `second` (markers
  // 1-based, founders 0-based).
  int64_t Count(int64_t first, int a, int64_t second, int b) const;
  // The counts of `n` cells at once: cell c = F a + b (0-based founders) of `cells` goes to
  // `counts[k]` as a 32-bit float.
  void CountCells(int64_t first, int64_t second, const uint8_t* cells, int n, float* counts) const;

 private:
  const uint64_t* Plane(int64_t marker, int founder) const {
    return bits_.data() + ((marker - 1) * founders_ + founder) * words_;
  }
  int founders_;
  int64_t words_;
  std::vector<uint64_t> bits_;
};

}  // namespace gae
