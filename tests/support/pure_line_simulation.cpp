#include "support/pure_line_simulation.h"

#include <cmath>
#include <cstdio>

namespace gae::testing {

double HaldaneFrequency(double distance_cm) { return 0.5 * (1.0 - std::exp(-2.0 * distance_cm / 100.0)); }

PureLineBreeder::PureLineBreeder(int type, std::vector<double> positions_cm, uint64_t seed)
    : type_(type), state_(seed) {
  for (std::size_t k = 1; k < positions_cm.size(); ++k)
    r_.push_back(HaldaneFrequency(positions_cm[k] - positions_cm[k - 1]));
}

double PureLineBreeder::Uniform() {
  // splitmix64: fast, and independent of the library's own stream.
  uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  z ^= z >> 31;
  return static_cast<double>(z >> 11) * 0x1.0p-53;
}

PureLineBreeder::Chromosome PureLineBreeder::Meiosis(const Plant& parent) {
  Chromosome out(parent.first.size());
  bool on_second = Uniform() < 0.5;
  for (std::size_t k = 0; k < out.size(); ++k) {
    if (k > 0 && Uniform() < r_[k - 1]) on_second = !on_second;
    out[k] = on_second ? parent.second[k] : parent.first[k];
  }
  return out;
}

std::vector<uint8_t> PureLineBreeder::Line() {
  auto cross = [&](uint8_t f) { return Meiosis({Founder(f), Founder(static_cast<uint8_t>(f + 1))}); };
  Plant last;
  if (type_ <= 2) {
    last = {cross(0), cross(2)};
  } else {
    last = {Meiosis({cross(0), cross(2)}), Meiosis({cross(4), cross(6)})};
  }
  if (type_ == 1 || type_ == 3) return Meiosis(last);
  while (last.first != last.second) last = {Meiosis(last), Meiosis(last)};
  return last.first;
}

namespace {

int Digit(int founders, int32_t pattern, int founder) {
  int32_t divisor = 1;
  for (int k = founder + 1; k < founders; ++k) divisor *= 10;
  return (pattern / divisor) % 10;
}

}  // namespace

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

PureLineData SimulatePureLineData(int type, int chromosomes, int per_chromosome, double spacing_cm,
                                  int lines, const std::vector<int32_t>& patterns, double missing,
                                  uint64_t seed) {
  const int founders = type <= 2 ? 4 : 8;
  PureLineData data;
  data.type = type;
  std::vector<double> positions;
  for (int k = 0; k < per_chromosome; ++k) positions.push_back(k * spacing_cm);
  for (int c = 0; c < chromosomes; ++c) {
    PureLineBreeder breeder(type, positions, seed + 7919 * c);
    std::vector<std::vector<uint8_t>> genomes;
    for (int l = 0; l < lines; ++l) genomes.push_back(breeder.Line());
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
  const std::size_t lines = data.letters.empty() ? 0 : data.letters[0].size();
  std::string out = "!Simulated pure lines\n";
  char buffer[64];
  for (long long v : {static_cast<long long>(data.type), 1LL, 1LL,
                      static_cast<long long>(data.names.size()), static_cast<long long>(lines)}) {
    std::snprintf(buffer, sizeof buffer, "%10lld\n", v);
    out += buffer;
  }
  for (std::size_t m = 0; m < data.names.size(); ++m) {
    std::snprintf(buffer, sizeof buffer, "%-8s %-12s", PatternText(founders, data.patterns[m]).c_str(),
                  data.names[m].c_str());
    out += buffer;
    for (char c : data.letters[m]) {
      out += ' ';
      out += c;
    }
    out += '\n';
  }
  out += "!Anchors\n";
  for (const std::string& name : data.names) out += name + " 0\n";
  return out;
}

}  // namespace gae::testing
