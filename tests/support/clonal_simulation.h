// Simulated clonal F1 and double-cross data for end-to-end tests, bred meiosis by meiosis: each
// parent passes one homologue of each chromosome, switching homologue between markers with the
// Haldane chance of the interval, and the progeny's type at a marker follows from the alleles
// its category places on the parents' homologues.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae::testing {

struct SimulatedClonalMarker {
  std::string name;
  double position_cm = 0;
  int category = 1;  // 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or A=CB=D, 5 A=DB=C
  // Which homologue of each parent carries the allele that the category names first (A of the
  // first parent, C of the second): 0 the first homologue, 1 the second. Markers that differ
  // here are in repulsion in that parent.
  int first_phase = 0;
  int second_phase = 0;
};

// Two-letter types (AC, ..., XX) of `individuals` progeny at the markers of one chromosome
// (sorted by position), a share of them missing: [marker][individual].
std::vector<std::vector<std::string>> SimulateClonalChromosome(
    const std::vector<SimulatedClonalMarker>& markers, int individuals, double missing_share, uint64_t seed);

// A CDM input file (Kosambi, intervals) of the markers in `listing` order.
std::string CdmInputFile(int population_type, const std::vector<SimulatedClonalMarker>& markers,
                         const std::vector<std::vector<std::string>>& types,
                         const std::vector<int>& listing);

}  // namespace gae::testing
