// Simulated mapping data for end-to-end tests: an F2 bred from inbred parents, each individual
// carrying two gametes of the F1 whose parental origin switches along the chromosome with the
// Haldane chance of each interval.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae::testing {

struct SimulatedMarker {
  std::string name;
  double position_cm;
};

// Genotype letters (A, H, B) of `individuals` F2 plants at the markers of one chromosome, in
// the order of `markers` (which must be sorted by position), with a share of missing scores.
std::vector<std::string> SimulateF2Chromosome(const std::vector<SimulatedMarker>& markers,
                                              int individuals, double missing_share, uint64_t seed);

// A MAP input file (F2, Kosambi, intervals) listing the markers in `listing` order.
std::string MapInputFile(const std::vector<SimulatedMarker>& markers,
                         const std::vector<std::string>& genotypes,
                         const std::vector<int>& listing, int individuals);

}  // namespace gae::testing
