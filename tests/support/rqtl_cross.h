// Bred crosses written as R/qtl users keep them: a csv (or rotated csvr) table of an id column,
// a trait, and one column per marker under its chromosome and position.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae::testing {

struct BredCross {
  int type = 7;                            // bi-parental population type it was bred as
  std::vector<std::string> names, chromosomes;
  std::vector<double> positions;           // cM
  std::vector<std::string> letters;        // per marker: A H B per individual
  std::vector<double> trait;               // per individual
};

// `chromosomes` chromosomes named "1", "2", ... of `per_chromosome` markers 12 cM apart.
BredCross BreedCross(int type, int chromosomes, int per_chromosome, int individuals, uint64_t seed);

// The cross as R/qtl's csv (codes A H B, "-" for X), or its rotated csvr layout, with
// `separator` between cells.
std::string RqtlText(const BredCross& cross, char separator = ',', bool rotated = false);

}  // namespace gae::testing
