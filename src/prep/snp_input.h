// What a SNP input file holds once read: the header, the missing-parent method, and the
// parents' and progeny's calls of every marker.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

struct SnpInput {
  int32_t tool_code = 2;  // the caller's: 20 clonal F1 / double cross, 30 pure lines, else two parents
  int32_t population_type = 0, mapping_function = 0, space_type = 0, num_markers = 0,
          population_size = 0;
  // 1: a marker with a missing parent is deleted; 2: the missing parent's allele is inferred
  // from the progeny where that can be done.
  int32_t missing_method = 1;
  int32_t num_parents = 2;
  std::vector<std::string> names;       // 35 characters, blank padded
  std::vector<uint8_t> parent_calls;    // SnpCall, num_parents per marker
  std::vector<uint8_t> progeny_calls;   // SnpCall, population_size per marker, line fastest
  std::vector<int32_t> anchors;
};

}  // namespace gae
