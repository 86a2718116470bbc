// Whole data sets bred with the test breeder, as the map tools take them: an F2 chromosome, a
// clonal F1 chromosome with its parents' phases, pure lines of the funnels; and the input files
// that carry them.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/breeder.h"

namespace gae::testing {

struct SimulatedMarker {
  std::string name;
  double position_cm;
};

// Genotype letters (A, H, B) of `individuals` F2 plants at the markers of one chromosome, in
// the order of `markers` (sorted by position), a share of them missing (X).
std::vector<std::string> SimulateF2Chromosome(const std::vector<SimulatedMarker>& markers,
                                              int individuals, double missing_share, uint64_t seed);

// A MAP input file (F2, Kosambi, intervals) listing the markers in `listing` order.
std::string MapInputFile(const std::vector<SimulatedMarker>& markers,
                         const std::vector<std::string>& genotypes,
                         const std::vector<int>& listing, int individuals);

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

// The type (AC, ..., BB) a progeny shows at a marker, given the homologue (0 or 1) it received
// from each parent, read against the marker's phases.
std::string ClonalType(const SimulatedClonalMarker& m, int from_first, int from_second);

// Two-letter types (AC, ..., XX) of `individuals` progeny of a clonal F1 at the markers of one
// chromosome (sorted by position), a share of them missing: [marker][individual].
std::vector<std::vector<std::string>> SimulateClonalChromosome(
    const std::vector<SimulatedClonalMarker>& markers, int individuals, double missing_share, uint64_t seed);

// A CDM input file (Kosambi, intervals) of the markers in `listing` order.
std::string CdmInputFile(int population_type, const std::vector<SimulatedClonalMarker>& markers,
                         const std::vector<std::vector<std::string>>& types,
                         const std::vector<int>& listing);

// A marker's founder pattern (one digit per founder, "ABAB" as 1212) and the letter a line
// then shows: the letter of the first founder with the same digit, as the input files carry it.
char ObservedLetter(int founders, int32_t pattern, uint8_t founder);
std::string PatternText(int founders, int32_t pattern);
// A random pattern as the reader accepts it: each founder has its own digit or repeats an
// earlier founder's, and not all founders are alike.
int32_t RandomPattern(int founders, std::mt19937_64& rng);

// Lines x markers of a pure-line data set.
struct PureLineData {
  int type = 1;  // 1 4PDH, 2 4PRIL, 3 8PDH, 4 8PRIL
  std::vector<std::string> names;
  std::vector<int32_t> patterns;
  std::vector<std::string> letters;  // by marker: one letter per line, X for missing
};

// `chromosomes` chromosomes of `per_chromosome` markers each, `spacing_cm` apart; patterns are
// taken from `patterns` in turn; each score is missing with chance `missing`.
PureLineData SimulatePureLineData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                  int lines, const std::vector<int32_t>& patterns, double missing,
                                  uint64_t seed);

// The data as a PLM input file (Kosambi, intervals), every marker free of anchors.
std::string PlmInputFile(const PureLineData& data);

// Individuals x markers of a bi-parental population of `type` (1 to 20) on several chromosomes,
// markers named C01M001...; each score is wrong with chance `error` (another genotype the type
// shows, drawn at random) and missing with chance `missing`.
struct BiparentalData {
  int type = 7;
  std::vector<std::string> names;
  std::vector<std::string> letters;  // by marker: A, H, B or X, one per individual
};
BiparentalData SimulateBiparentalData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                      int individuals, double error, double missing, uint64_t seed);

// The data as a MAP input file (Kosambi, intervals), every marker co-dominant and free of anchors.
std::string BiparentalInputFile(const BiparentalData& data);

}  // namespace gae::testing
