// A finished bi-parental map as the writers see it: the markers of the input file and the map
// the caller built from them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

struct MapLayout {
  // Read again from the input file.
  int32_t population_type = 0;
  int32_t mapping_function = 1;
  int32_t space_type = 1;
  int32_t num_individuals = 0;
  std::vector<std::string> marker_names;  // 35 characters, input order
  std::vector<int32_t> marker_class;      // 1 co-dominant, 12 dominant, 10 recessive
  std::vector<char> types;                // genotype letters, individuals fastest, input order

  // From the caller.
  int32_t num_markers = 0;
  int32_t num_mapped = 0;    // linked markers, at the front of `order`
  int32_t num_unlinked = 0;  // next in `order`; the deleted markers close it
  std::vector<int32_t> anchor;                // by marker
  std::vector<std::string> chromosome_names;  // 19 characters each
  std::vector<int32_t> chromosome_sizes;      // markers on each chromosome
  std::vector<int32_t> order;                 // 1-based marker numbers
  std::vector<float> position;                // cM, parallel to the linked part of `order`

  int32_t NumChromosomes() const { return static_cast<int32_t>(chromosome_sizes.size()); }
  int32_t NumDeleted() const { return num_markers - num_mapped - num_unlinked; }
  const char* TypesOf(int32_t marker) const {
    return types.data() + static_cast<int64_t>(marker - 1) * num_individuals;
  }
};

}  // namespace gae
