// Marker names of imported sites: the ID column, or CHROM_POS where it is ".". The map tools
// read a name as one item of at most 35 characters, so characters that end an item (blank,
// tab, comma) become '_', a longer name is cut, and a name already given gets a number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace gae {

class MarkerNamer {
 public:
  std::string Name(std::string_view id, std::string_view chromosome, int64_t position);

  uint64_t from_id = 0, from_position = 0, changed = 0;

 private:
  std::unordered_set<std::string> given_;
};

}  // namespace gae
