// Four-way and eight-way pure lines bred in miniature: founders crossed meiosis by meiosis
// through the funnel (A x B) x (C x D) (and, for eight founders, crossed with (E x F) x (G x H)),
// then a doubled haploid from one gamete of the last individual or a recombinant inbred line
// selfed until it is homozygous at every marker. Crossovers fall independently in each
// interval with the Haldane chance of its length, so a pair of markers d cM apart recombines
// with r = (1 - e^(-2d/100)) / 2 in every meiosis.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae::testing {

// Population types: 1 4PDH, 2 4PRIL, 3 8PDH, 4 8PRIL.
class PureLineBreeder {
 public:
  PureLineBreeder(int type, std::vector<double> positions_cm, uint64_t seed);

  // The founder (0-based) that one new line carries at each marker.
  std::vector<uint8_t> Line();
  double Uniform();

 private:
  using Chromosome = std::vector<uint8_t>;
  struct Plant {
    Chromosome first, second;
  };
  Chromosome Meiosis(const Plant& parent);
  Chromosome Founder(uint8_t f) const { return Chromosome(r_.size() + 1, f); }

  int type_;
  std::vector<double> r_;  // chance of a crossover between marker k and k + 1
  uint64_t state_;
};

double HaldaneFrequency(double distance_cm);

// A marker's founder pattern (one digit per founder, "ABAB" as 1212) and the letter a line
// then shows: the letter of the first founder with the same digit, as the input files carry it.
char ObservedLetter(int founders, int32_t pattern, uint8_t founder);
std::string PatternText(int founders, int32_t pattern);

// Lines x markers of a whole data set for a PLM input file.
struct PureLineData {
  int type = 1;
  std::vector<std::string> names;
  std::vector<int32_t> patterns;
  std::vector<std::string> letters;  // by marker: one letter per line, X for missing
};

// `chromosomes` chromosomes of `per_chromosome` markers each, `spacing_cm` apart; patterns are
// drawn from `patterns` in turn; each score is missing with chance `missing`.
PureLineData SimulatePureLineData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                  int lines, const std::vector<int32_t>& patterns, double missing,
                                  uint64_t seed);

// The data as a PLM input file (Kosambi, intervals), every marker free of anchors.
std::string PlmInputFile(const PureLineData& data);

}  // namespace gae::testing
