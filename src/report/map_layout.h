// A finished map as the writers see it, in two parts. The finished map is what every map
// tool's writer shares (the chromosome table, the unlinked and deleted lists, the .lod, .rec and
// .dis matrices): the caller's arrays and the marker names. A tool's layout adds its own
// marker data; MapLayout is the bi-parental one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

struct FinishedMapLayout {
  // From the caller.
  int32_t num_markers = 0;
  int32_t num_mapped = 0;    // linked markers, at the front of `order`
  int32_t num_unlinked = 0;  // next in `order`; the deleted markers close it
  std::vector<int32_t> anchor;                // by marker
  std::vector<std::string> chromosome_names;  // 19 characters each
  std::vector<int32_t> chromosome_sizes;      // markers on each chromosome
  std::vector<int32_t> order;                 // 1-based marker numbers
  std::vector<float> position;                // cM, parallel to the linked part of `order`

  // From the input file.
  std::vector<std::string> marker_names;  // 35 characters, input order
  int32_t mapping_function = 1;           // turns the stored frequencies into distances

  int32_t NumChromosomes() const { return static_cast<int32_t>(chromosome_sizes.size()); }
  int32_t NumDeleted() const { return num_markers - num_mapped - num_unlinked; }
};

// What every tool that reads a genotype file adds to the finished map: the population and the
// stored genotypes of each marker.
struct GenotypeLayout : FinishedMapLayout {
  int32_t population_type = 0;
  int32_t space_type = 1;
  int32_t num_individuals = 0;
  std::vector<char> types;  // one letter per genotype, individuals fastest, input order

  const char* TypesOf(int32_t marker) const {
    return types.data() + static_cast<int64_t>(marker - 1) * num_individuals;
  }
};

// The bi-parental and pure-line tools' marker data beside the finished map.
struct MapLayout : GenotypeLayout {
  // 1 co-dominant, 12 dominant, 10 recessive; a pure-line map holds the founder patterns here.
  std::vector<int32_t> marker_class;
};

}  // namespace gae
