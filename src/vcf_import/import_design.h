// What an import of variant calls writes: the map tool whose input file it is (told by the
// output file's extension), the population type, and how many parents the calls of a site are
// read against. Two inbred parents make a bi-parental (MAP) file; two outbred parents a clonal
// F1 and four inbred grandparents a double cross (CDM); four or eight inbred founders the lines
// of a pure-line funnel (PLM).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gae {

struct ImportDesign {
  int tool_code = 2;             // 2 MAP, 20 CDM, 30 PLM: the writer's and the reader's tool codes
  int32_t population_type = 0;   // 1..20, 1..2 or 1..4 within the tool
  int parents = 2;
};

// The design of an output path (".map", ".cdm" or ".plm", any case), a population named by
// number or name (may be empty where the parents tell it: a clonal F1 has two, a double cross
// four) and the number of parents given. nullopt with the reason in `why`.
std::optional<ImportDesign> ChooseImportDesign(std::string_view output_path, std::string_view population,
                                               int parents, std::string& why);

// The reader's tool code for a design (104 MAP, 20, 30).
int ReaderToolCode(const ImportDesign& design);

// "F2 (MAP type 7)", "Double Cross (CDM type 2)".
std::string DesignText(const ImportDesign& design);

}  // namespace gae
