// R/qtl's "csv" cross file, the form in which many breeders keep their data: a row of column
// names (phenotypes first, then markers), a row of chromosomes (blank for phenotypes), an
// optional row of map positions (blank for phenotypes), then one row per individual.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace gaecli {

struct RqtlCross {
  std::vector<std::string> names, chromosomes;  // per marker
  std::vector<std::string> letters;             // per marker, one MAP letter per individual
  int individuals = 0;
  bool has_map = false;
};

// The five genotype codes of R/qtl's `genotypes` option in its order: AA, AB, BB, not BB, not
// AA. They become the MAP letters A, H, B, D (P1 or F1) and R (F1 or P2); "-", "NA" and an
// empty cell are missing (X).
using RqtlCodes = std::array<std::string, 5>;

// False with `error` (the line, marker and individual of the first bad cell) on failure.
bool ParseRqtlCsv(const std::string& text, const std::string& file, const RqtlCodes& codes, RqtlCross& out,
                  std::string& error);

// The anchor of each marker: its chromosome's number in order of first appearance (with
// `by_chromosome`), else 0 (free).
std::vector<int> RqtlAnchors(const RqtlCross& cross, bool by_chromosome);

}  // namespace gaecli
