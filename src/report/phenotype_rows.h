// The QTL files of a map run (.bip, .met) are frames with an empty phenotype section; when the
// traits of the population are known (an import kept them), the frame is filled: the count
// line says how many rows follow, and one row per trait (or environment) closes the file, in the
// layout the phenotype reader takes: the name, then one value per individual.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gae {

// `count_remark`: the remark of the count line, "!Number of traits" in .bip, "!Number of
// environments" in .met. `names` of 19 characters at most, without blanks; `rows[k]` one cell
// per individual, a number or NA. Cells that are numbers are written in at most 20 characters.
std::string WithPhenotypeRows(std::string_view qtl_text, std::string_view count_remark,
                              const std::vector<std::string>& names,
                              const std::vector<std::vector<std::string>>& rows);

// Whether every cell of a column is a number or a missing word, as the phenotype reader takes it.
bool NumericColumn(const std::vector<std::string>& cells);

}  // namespace gae
