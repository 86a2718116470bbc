#include "support/bred_data_sets.h"

#include <cstdio>

namespace gae::testing {

namespace {

std::vector<double> Positions(const auto& markers) {
  std::vector<double> cm;
  for (const auto& m : markers) cm.push_back(m.position_cm);
  return cm;
}

int Digit(int founders, int32_t pattern, int founder) {
  int32_t divisor = 1;
  for (int k = founder + 1; k < founders; ++k) divisor *= 10;
  return (pattern / divisor) % 10;
}

// The five header lines of a map tool's input file.
std::string Header(const std::string& remark, int type, int function, std::size_t markers, std::size_t size) {
  return "! " + remark + "\n" + std::to_string(type) + "\n" + std::to_string(function) + "\n1\n" +
         std::to_string(markers) + "\n" + std::to_string(size) + "\n";
}

std::string FreeAnchors(const std::vector<std::string>& names) {
  std::string text = "! anchors\n";
  for (const std::string& name : names) text += name + " 0\n";
  return text;
}

}  // namespace

std::string ClonalType(const SimulatedClonalMarker& m, int from_first, int from_second) {
  const bool first_named = from_first == m.first_phase;    // carries A (else B)
  const bool second_named = from_second == m.second_phase;  // carries C (else D)
  switch (m.category) {
    case 1: return std::string(1, first_named ? 'A' : 'B') + (second_named ? 'C' : 'D');
    case 2: return std::string("X") + (second_named ? 'C' : 'D');
    case 3: return std::string(1, first_named ? 'A' : 'B') + "X";
    default: {
      // Alleles 1 (A) and 2 (B); the second parent's named homologue carries 1 in AB=CD and
      // A=CB=D, 2 in A=DB=C.
      const int a = first_named ? 1 : 2;
      const int b = second_named == (m.category == 4) ? 1 : 2;
      return a + b == 2 ? "AA" : (a + b == 3 ? "AB" : "BB");
    }
  }
}

std::vector<std::string> SimulateF2Chromosome(const std::vector<SimulatedMarker>& markers,
                                              int individuals, double missing_share, uint64_t seed) {
  Breeder breeder = Breeder::AtPositions(Positions(markers), seed);
  std::vector<std::string> genotypes(markers.size(), std::string(individuals, 'X'));
  for (int ind = 0; ind < individuals; ++ind) {
    const Plant f2 = breeder.Biparental(7);
    for (std::size_t k = 0; k < markers.size(); ++k)
      if (breeder.Uniform() >= missing_share) genotypes[k][ind] = BiparentalLetter(f2, static_cast<int>(k));
  }
  return genotypes;
}

std::string MapInputFile(const std::vector<SimulatedMarker>& markers,
                         const std::vector<std::string>& genotypes,
                         const std::vector<int>& listing, int individuals) {
  std::string text = Header("simulated F2", 7, 1, listing.size(), individuals);
  std::vector<std::string> names;
  for (int k : listing) {
    names.push_back(markers[k].name);
    text += markers[k].name;
    for (char g : genotypes[k]) text += std::string(" ") + g;
    text += "\n";
  }
  return text + FreeAnchors(names);
}

std::vector<std::vector<std::string>> SimulateClonalChromosome(
    const std::vector<SimulatedClonalMarker>& markers, int individuals, double missing_share, uint64_t seed) {
  Breeder breeder = Breeder::AtPositions(Positions(markers), seed);
  std::vector<std::vector<std::string>> types(markers.size(), std::vector<std::string>(individuals, "XX"));
  for (int ind = 0; ind < individuals; ++ind) {
    const Plant progeny = breeder.ClonalProgeny();
    for (std::size_t k = 0; k < markers.size(); ++k)
      if (breeder.Uniform() >= missing_share)
        types[k][ind] = ClonalType(markers[k], progeny.first[k], progeny.second[k] - 2);
  }
  return types;
}

std::string CdmInputFile(int population_type, const std::vector<SimulatedClonalMarker>& markers,
                         const std::vector<std::vector<std::string>>& types,
                         const std::vector<int>& listing) {
  static const char* kCategory[2][6] = {{"", "ABCD", "A=B", "C=D", "AB=CD", ""},
                                        {"", "ABCD", "A=B", "C=D", "A=CB=D", "A=DB=C"}};
  std::string text = Header("simulated clonal population", population_type, 1, listing.size(),
                            types.empty() ? 0 : types.front().size());
  std::vector<std::string> names;
  for (int k : listing) {
    names.push_back(markers[k].name);
    text += std::string(kCategory[population_type == 1 ? 0 : 1][markers[k].category]) + " " + markers[k].name;
    for (const std::string& t : types[k]) text += " " + t;
    text += "\n";
  }
  return text + FreeAnchors(names);
}

char ObservedLetter(int founders, int32_t pattern, uint8_t founder) {
  const int digit = Digit(founders, pattern, founder);
  for (int j = 0; j < founders; ++j)
    if (Digit(founders, pattern, j) == digit) return static_cast<char>('A' + j);
  return 'X';
}

std::string PatternText(int founders, int32_t pattern) {
  std::string text;
  for (int k = 0; k < founders; ++k) text += static_cast<char>('A' + Digit(founders, pattern, k) - 1);
  return text;
}

int32_t RandomPattern(int founders, std::mt19937_64& rng) {
  for (;;) {
    std::vector<int> digit(founders);
    int32_t pattern = 0;
    for (int k = 0; k < founders; ++k) {
      digit[k] = (k == 0 || rng() % 2 == 0) ? k + 1 : digit[rng() % k];
      pattern = pattern * 10 + digit[k];
    }
    if (pattern != (founders == 4 ? 1111 : 11111111)) return pattern;
  }
}

PureLineData SimulatePureLineData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                  int lines, const std::vector<int32_t>& patterns, double missing,
                                  uint64_t seed) {
  const int founders = type <= 2 ? 4 : 8;
  PureLineData data;
  data.type = type;
  std::vector<double> positions;
  for (int k = 0; k < per_chromosome; ++k) positions.push_back(k * spacing_cm);
  for (int c = 0; c < chromosomes; ++c) {
    Breeder breeder = Breeder::AtPositions(positions, seed + 7919 * c);
    std::vector<Chromosome> genomes;
    for (int l = 0; l < lines; ++l) genomes.push_back(breeder.PureLine(type));
    for (int k = 0; k < per_chromosome; ++k) {
      char name[32];
      std::snprintf(name, sizeof name, "C%02dM%03d", c + 1, k + 1);
      data.names.push_back(name);
      const int32_t pattern = patterns[data.patterns.size() % patterns.size()];
      data.patterns.push_back(pattern);
      std::string row;
      for (int l = 0; l < lines; ++l)
        row += breeder.Uniform() < missing ? 'X' : ObservedLetter(founders, pattern, genomes[l][k]);
      data.letters.push_back(row);
    }
  }
  return data;
}

std::string PlmInputFile(const PureLineData& data) {
  const int founders = data.type <= 2 ? 4 : 8;
  std::string out = Header("simulated pure lines", data.type, 1, data.names.size(),
                           data.letters.empty() ? 0 : data.letters[0].size());
  for (std::size_t m = 0; m < data.names.size(); ++m) {
    char field[64];
    std::snprintf(field, sizeof field, "%-8s %-12s", PatternText(founders, data.patterns[m]).c_str(),
                  data.names[m].c_str());
    out += field;
    for (char c : data.letters[m]) out += std::string(" ") + c;
    out += '\n';
  }
  return out + FreeAnchors(data.names);
}

BiparentalData SimulateBiparentalData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                      int individuals, double error, double missing, uint64_t seed) {
  BiparentalData data;
  data.type = type;
  std::vector<double> positions;
  for (int k = 0; k < per_chromosome; ++k) positions.push_back(k * spacing_cm);
  // The genotypes a type shows: a backcross to P1 no B, to P2 no A, lines and haploids no H.
  std::string shown = "AHB";
  if (type == 1 || type == 9) shown = "AH";
  else if (type == 2 || type == 10) shown = "HB";
  else if (type != 7 && type != 8 && (type < 13 || type > 16)) shown = "AB";
  for (int c = 0; c < chromosomes; ++c) {
    Breeder breeder = Breeder::AtPositions(positions, seed + 7919 * c);
    std::vector<Plant> plants;
    for (int i = 0; i < individuals; ++i) plants.push_back(breeder.Biparental(type));
    for (int k = 0; k < per_chromosome; ++k) {
      char name[32];
      std::snprintf(name, sizeof name, "C%02dM%03d", c + 1, k + 1);
      data.names.push_back(name);
      std::string row;
      for (const Plant& plant : plants) {
        char g = BiparentalLetter(plant, k);
        if (breeder.Uniform() < error) {
          std::string others = shown;
          others.erase(others.find(g), 1);
          g = others[static_cast<std::size_t>(breeder.Uniform() * others.size())];
        }
        row += breeder.Uniform() < missing ? 'X' : g;
      }
      data.letters.push_back(row);
    }
  }
  return data;
}

std::string BiparentalInputFile(const BiparentalData& data) {
  std::string out = Header("simulated bi-parental population", data.type, 1, data.names.size(),
                           data.letters.empty() ? 0 : data.letters[0].size());
  for (std::size_t m = 0; m < data.names.size(); ++m) {
    out += data.names[m];
    for (char c : data.letters[m]) out += std::string(" ") + c;
    out += '\n';
  }
  return out + FreeAnchors(data.names);
}

}  // namespace gae::testing
