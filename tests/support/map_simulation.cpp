#include "support/map_simulation.h"

#include <cmath>
#include <random>

namespace gae::testing {

std::vector<std::string> SimulateF2Chromosome(const std::vector<SimulatedMarker>& markers,
                                              int individuals, double missing_share, uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<std::string> genotypes(markers.size(), std::string(individuals, 'X'));
  for (int ind = 0; ind < individuals; ++ind) {
    int origin[2] = {unit(rng) < 0.5, unit(rng) < 0.5};
    double last = markers.empty() ? 0.0 : markers.front().position_cm;
    for (size_t k = 0; k < markers.size(); ++k) {
      const double r = 0.5 * (1.0 - std::exp(-2.0 * (markers[k].position_cm - last) / 100.0));
      last = markers[k].position_cm;
      for (int& o : origin)
        if (unit(rng) < r) o = 1 - o;
      const int p1 = (origin[0] == 0) + (origin[1] == 0);
      genotypes[k][ind] = unit(rng) < missing_share ? 'X' : (p1 == 2 ? 'A' : (p1 == 1 ? 'H' : 'B'));
    }
  }
  return genotypes;
}

std::string MapInputFile(const std::vector<SimulatedMarker>& markers,
                         const std::vector<std::string>& genotypes,
                         const std::vector<int>& listing, int individuals) {
  std::string text = "! simulated F2\n7\n1\n1\n" + std::to_string(listing.size()) + "\n" +
                     std::to_string(individuals) + "\n";
  for (int k : listing) {
    text += markers[k].name;
    for (char g : genotypes[k]) text += std::string(" ") + g;
    text += "\n";
  }
  text += "! anchors\n";
  for (int k : listing) text += markers[k].name + " 0\n";
  return text;
}

}  // namespace gae::testing
