// Writes the bundled MAP example to standard output: an F2 of 200 individuals with 150 markers
// on five chromosomes, simulated meiosis by meiosis (Haldane, no interference), listed out of
// map order, with some dominant and recessive markers and about 2% missing genotypes. Marker
// "CcMmm" is marker mm of chromosome c, so a reader can check the map the program builds.
//
// make_map_example [SEED [LENGTH CODOMINANT DOMINANT [TRUTH]]]: other data sets of the same
// shape, every chromosome LENGTH cM long, a marker co-dominant with chance CODOMINANT,
// dominant with chance DOMINANT and recessive otherwise; TRUTH receives "name chromosome cM".
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr unsigned long long kSeed = 2;

struct Marker {
  std::string name;
  int chromosome;
  double position_cm;
  int kind;  // 1 co-dominant, 12 dominant (P1 and F1 alike), 10 recessive (F1 and P2 alike)
};

}  // namespace

int main(int argc, char** argv) {
  const int kIndividuals = 200;
  const double kLengths[] = {120.0, 100.0, 90.0, 80.0, 110.0};
  const int kPerChromosome = 30;
  // The seed was picked so that the default run recovers all five chromosomes: with 150
  // markers some seeds give two unlinked markers a chance LOD above 3, which joins two groups.
  const unsigned long long seed = argc > 1 ? std::stoull(argv[1]) : kSeed;
  const double length = argc > 4 ? std::stod(argv[2]) : 0.0;
  const double codominant = argc > 4 ? std::stod(argv[3]) : 0.8;
  const double dominant_to = argc > 4 ? codominant + std::stod(argv[4]) : 0.9;
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);

  std::vector<Marker> markers;
  for (int c = 0; c < 5; ++c) {
    std::vector<double> positions(kPerChromosome);
    for (double& p : positions) p = unit(rng) * (length > 0.0 ? length : kLengths[c]);
    std::sort(positions.begin(), positions.end());
    for (int m = 0; m < kPerChromosome; ++m) {
      char name[16];
      std::snprintf(name, sizeof name, "C%dM%02d", c + 1, m + 1);
      const double u = unit(rng);
      const int kind = u < codominant ? 1 : (u < dominant_to ? 12 : 10);
      markers.push_back({name, c + 1, positions[m], kind});
    }
  }

  // Genotypes: each individual carries two gametes of the F1; along a chromosome a gamete
  // switches parental origin with the Haldane probability of the interval.
  std::vector<std::vector<char>> genotype(markers.size(), std::vector<char>(kIndividuals));
  for (int ind = 0; ind < kIndividuals; ++ind) {
    for (int c = 1; c <= 5; ++c) {
      int origin[2] = {unit(rng) < 0.5 ? 0 : 1, unit(rng) < 0.5 ? 0 : 1};
      double last = 0.0;
      for (std::size_t k = 0; k < markers.size(); ++k) {
        if (markers[k].chromosome != c) continue;
        const double r = 0.5 * (1.0 - std::exp(-2.0 * (markers[k].position_cm - last) / 100.0));
        for (int& o : origin)
          if (unit(rng) < r) o = 1 - o;
        last = markers[k].position_cm;
        const int p1_alleles = (origin[0] == 0) + (origin[1] == 0);
        char g = p1_alleles == 2 ? 'A' : (p1_alleles == 1 ? 'H' : 'B');
        if (markers[k].kind == 12 && g != 'B') g = 'D';
        if (markers[k].kind == 10 && g != 'A') g = 'R';
        if (unit(rng) < 0.02) g = 'X';
        genotype[k][ind] = g;
      }
    }
  }

  if (argc > 5) {
    FILE* truth = std::fopen(argv[5], "w");
    if (truth == nullptr) return 1;
    for (const Marker& m : markers) std::fprintf(truth, "%s %d %.4f %d\n", m.name.c_str(), m.chromosome, m.position_cm, m.kind);
    std::fclose(truth);
  }

  std::vector<std::size_t> listing(markers.size());
  for (std::size_t k = 0; k < listing.size(); ++k) listing[k] = k;
  std::shuffle(listing.begin(), listing.end(), rng);

  std::printf("!*****Note: lines staring with \"!\" are remarks and will be ignored in the program*********\n");
  std::printf("!Simulated F2 population: 150 markers on five chromosomes, listed out of map order.\n");
  std::printf("!Marker CcMmm is the mm-th marker of chromosome c.\n");
  std::printf("%10d  !Mapping Population (7 for F2)\n", 7);
  std::printf("%10d  !Mapping Function (1 for Kosambi; 2 for Haldane; 3 for Morgan)\n", 1);
  std::printf("%10d  !Marker Space Type (1 for intervals; 2 for positions)\n", 1);
  std::printf("%10d  !Number of Markers\n", static_cast<int>(markers.size()));
  std::printf("%10d  !Size of the mapping population\n", kIndividuals);
  std::printf("\n!*****Marker Types: A = P1, H = F1, B = P2, D = P1 or F1, R = F1 or P2, X = missing\n");
  for (std::size_t k : listing) {
    std::printf("%-10s", markers[k].name.c_str());
    for (char g : genotype[k]) std::printf(" %c", g);
    std::printf("\n");
  }
  std::printf("\n!*****Anchor information******************************************************************\n");
  std::printf("!Marker name followed by anchor group\n");
  for (std::size_t k : listing) std::printf("%-10s %4d\n", markers[k].name.c_str(), 0);
  return 0;
}
