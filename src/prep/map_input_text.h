// The input file of a map tool, written from markers already in the reader's letters: what
// SNP conversion and marker binning hand on to the map tools. The file follows the input
// grammar and carries the remark blocks of the written input files, so MAP, CDM and PLM read
// it back as it stands.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae {

struct MapInputRecord {
  int tool_code = 2;  // 20 CDM, 30 PLM, anything else MAP
  int32_t population_type = 0, mapping_function = 1, space_type = 1, population_size = 0;
  std::vector<std::string> names;       // per marker
  std::vector<int32_t> categories;      // MAP: 1, 12, 10; CDM: 1..5; PLM: founder pattern
  std::vector<std::string> letters;     // per marker, one letter per line (the reader's letters)
  std::vector<int32_t> anchors;         // per marker
};

std::string MapInputText(const MapInputRecord& record);

// The category field of a clonal marker (1 "ABCD" ... 5 "A=DB=C"; 4 is "AB=CD" in a clonal F1,
// "A=CB=D" in a double cross) and of a pure-line pattern (1212 "ABAB").
std::string ClonalCategoryField(int32_t category, int32_t population_type);
std::string FounderPatternField(int32_t pattern);
// The clonal two-letter type of a stored letter A..K, X.
std::string ClonalToken(char letter);

}  // namespace gae
