// R/qtl's "csv" cross file, the form in which many breeders keep their data: a row of column
// names (phenotypes first, then markers), a row of chromosomes (blank for phenotypes), an
// optional row of map positions (blank for phenotypes), then one row per individual. R/qtl's
// "csvr" file is the same table rotated (one row per marker or phenotype). Spreadsheets save
// either with commas, semicolons or tabs, and often with a trailing line or column of
// separators; all of that is taken as it comes.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace gaecli {

struct RqtlCross {
  std::vector<std::string> names, chromosomes;       // per marker (names without blanks)
  std::vector<std::optional<double>> positions;      // per marker, from the map row
  std::vector<std::string> letters;                  // per marker, one letter A H B D R X per individual
  int individuals = 0;
  bool has_map = false;
  bool rotated = false;                              // the csvr layout
  char separator = ',';
  std::vector<std::string> ids;                      // per individual: the id column, or the row number
  std::vector<std::string> trait_names;              // the other phenotype columns (without blanks)
  std::vector<std::vector<std::string>> traits;      // [trait][individual], as the file has them
  std::vector<std::string> renamed;                  // "a b" -> "a_b", for the user to hear of it
};

// The five genotype codes of R/qtl's `genotypes` option in its order: AA, AB, BB, not BB, not
// AA. They become the MAP letters A, H, B, D (P1 or F1) and R (F1 or P2); "-", "NA" and an
// empty cell are missing (X).
using RqtlCodes = std::array<std::string, 5>;

// False with `error` (the line, marker and individual of the first bad cell) on failure.
bool ParseRqtlCsv(const std::string& text, const std::string& file, const RqtlCodes& codes, RqtlCross& out,
                  std::string& error);

// The codes of a file that R/qtl's write.cross wrote with its own allele names ("BB", "BA",
// "not AA"): taken from its one heterozygote code. nullopt when the codes do not follow that
// pattern.
std::optional<RqtlCodes> InferRqtlCodes(const std::string& text);

// The anchor of each marker: its chromosome's number in order of first appearance (with
// `by_chromosome`), else 0 (free).
std::vector<int> RqtlAnchors(const RqtlCross& cross, bool by_chromosome);

// A population type from --pop: 1 to 20, the library's name of a type ("F2", "RIL",
// "P1BC1F1"), or the cross type R/qtl users give (bc, f2, dh, riself). 0 with `error` (the
// names that work) when none fits.
int RqtlPopulationType(const std::string& text, std::string& error);

// `gaengine import rqtl ...` on the `import` command.
void RegisterRqtlImport(CLI::App& import, int& exit_code);

}  // namespace gaecli
