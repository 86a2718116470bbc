#include "support/clonal_simulation.h"

#include <cmath>
#include <random>

namespace gae::testing {

namespace {

// The type a progeny shows at a marker, given the homologue it received from each parent
// (0 or 1), read against the phases of the marker.
std::string Observed(const SimulatedClonalMarker& m, int from_first, int from_second) {
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

}  // namespace

std::vector<std::vector<std::string>> SimulateClonalChromosome(
    const std::vector<SimulatedClonalMarker>& markers, int individuals, double missing_share, uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<std::vector<std::string>> types(markers.size(), std::vector<std::string>(individuals));
  for (int ind = 0; ind < individuals; ++ind) {
    // Two meioses, one in each parent.
    int homologue[2] = {unit(rng) < 0.5, unit(rng) < 0.5};
    double last = markers.empty() ? 0.0 : markers.front().position_cm;
    for (size_t k = 0; k < markers.size(); ++k) {
      const double r = 0.5 * (1.0 - std::exp(-2.0 * (markers[k].position_cm - last) / 100.0));
      last = markers[k].position_cm;
      for (int& h : homologue)
        if (unit(rng) < r) h = 1 - h;
      types[k][ind] = unit(rng) < missing_share ? "XX" : Observed(markers[k], homologue[0], homologue[1]);
    }
  }
  return types;
}

std::string CdmInputFile(int population_type, const std::vector<SimulatedClonalMarker>& markers,
                         const std::vector<std::vector<std::string>>& types,
                         const std::vector<int>& listing) {
  static const char* kCategory[2][6] = {{"", "ABCD", "A=B", "C=D", "AB=CD", ""},
                                        {"", "ABCD", "A=B", "C=D", "A=CB=D", "A=DB=C"}};
  const int individuals = types.empty() ? 0 : static_cast<int>(types.front().size());
  std::string text = "! simulated clonal population\n" + std::to_string(population_type) + "\n1\n1\n" +
                     std::to_string(listing.size()) + "\n" + std::to_string(individuals) + "\n";
  for (int k : listing) {
    text += std::string(kCategory[population_type == 1 ? 0 : 1][markers[k].category]) + " " + markers[k].name;
    for (const std::string& t : types[k]) text += " " + t;
    text += "\n";
  }
  text += "! anchors\n";
  for (int k : listing) text += markers[k].name + " 0\n";
  return text;
}

}  // namespace gae::testing
