// The error scan: which genotypes it tests, what it flags, how well it finds errors, and the
// report it writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "errorscan/err_report.h"
#include "errorscan/error_scan.h"
#include "errorscan/imputation.h"
#include "support/bred_data_sets.h"

namespace gae {
namespace {

ChromosomeRecord Chromosome(std::vector<float> positions) {
  ChromosomeRecord c;
  c.positions = positions;
  c.marker_names.assign(positions.size(), std::string(35, ' '));
  return c;
}

// Rows are individuals here, for legibility; the scan wants markers major.
std::string MarkersMajor(const std::vector<std::string>& individuals) {
  std::string m;
  for (std::size_t k = 0; k < individuals[0].size(); ++k)
    for (const std::string& row : individuals) m += row[k];
  return m;
}

int64_t Scan(const PopulationModel& model, const std::vector<ChromosomeRecord>& chroms, std::string& matrix,
             int n, UniformStream& random) {
  std::size_t markers = 0;
  for (const auto& c : chroms) markers += c.positions.size();
  const std::vector<int32_t> classes(markers, 1);
  return ErrorScan(model, n, chroms, classes, std::span<char>(matrix.data(), matrix.size()), random);
}

// Seeds that make the stream's next number exactly `z` times its scale.
UniformStream StreamAboutToGive(int32_t z) {
  auto power = [](uint64_t a, uint64_t e, uint64_t m) {
    uint64_t r = 1;
    for (a %= m; e > 0; e >>= 1, a = a * a % m)
      if (e & 1) r = r * a % m;
    return r;
  };
  const uint64_t m1 = 2147483563, m2 = 2147483399;
  const uint64_t next2 = 1000, next1 = static_cast<uint64_t>(z) + next2;
  UniformStream s;
  s.SetSeed({static_cast<int32_t>(next1 * power(40014, m1 - 2, m1) % m1),
             static_cast<int32_t>(next2 * power(40692, m2 - 2, m2) % m2)});
  return s;
}

TEST(CheckTriple, OnlyGenotypesThatDisagreeWithBothFlanksAreDrawnFor) {
  const PopulationModel dh{10, 3, 2};
  UniformStream random;
  const UniformStream before = random;
  char middle = 'A';
  EXPECT_FALSE(CheckTriple(dh, 0, 1, 2, 'A', middle, 'B', random));
  EXPECT_EQ(random.GetSeed(), before.GetSeed());  // no number was drawn
  // Tightly linked flanks: an A between two B's has almost no chance and is flagged.
  EXPECT_TRUE(CheckTriple(dh, 0, 0.01f, 0.02f, 'B', middle, 'B', random));
  EXPECT_EQ(middle, 'X');
  // A population without tables never flags.
  middle = 'A';
  EXPECT_FALSE(CheckTriple({10, 0, 2}, 0, 0.01f, 0.02f, 'B', middle, 'B', random));
  EXPECT_EQ(middle, 'A');
}

TEST(CheckTriple, FlagsWithChanceOneMinusTheTableEntry) {
  const PopulationModel f2{10, 7, 2};
  UniformStream random;
  const ThreeLocusTable t = ThreeLocusProbabilities(10, 7, 2, 0, 15, 35);
  const float p = t.At(0 * 3 + 1, 2);  // B between A and H
  int flagged = 0;
  const int trials = 50000;
  for (int k = 0; k < trials; ++k) {
    char middle = 'B';
    flagged += CheckTriple(f2, 0, 15, 35, 'A', middle, 'H', random);
  }
  EXPECT_NEAR(flagged / double(trials), 1.0 - p, 5 * std::sqrt(p * (1 - p) / trials));
}

TEST(CheckTriple, AUniformEqualToTheChanceKeepsTheGenotype) {
  // Unlinked doubled-haploid markers: B between A and A has chance exactly 1/2.
  const PopulationModel dh{10, 3, 2};
  ASSERT_EQ(ThreeLocusProbabilities(10, 3, 2, 0, 2000, 4000).At(0, 1), 0.5f);
  int32_t z = 1073741000;
  while (static_cast<float>(z) * 4.656613e-10f < 0.5f) ++z;
  ASSERT_EQ(static_cast<float>(z) * 4.656613e-10f, 0.5f);
  UniformStream at_half = StreamAboutToGive(z);
  UniformStream probe = at_half;
  ASSERT_EQ(probe.Next(), 0.5f);
  char middle = 'B';
  EXPECT_FALSE(CheckTriple(dh, 0, 2000, 4000, 'A', middle, 'A', at_half));
  // The next representable number above one half flags it.
  int32_t above = z;
  while (static_cast<float>(above) * 4.656613e-10f <= 0.5f) ++above;
  UniformStream over = StreamAboutToGive(above);
  EXPECT_TRUE(CheckTriple(dh, 0, 2000, 4000, 'A', middle, 'A', over));
}

TEST(ErrorScan, WhichMarkersAreTested) {
  const PopulationModel f2{10, 7, 2};
  UniformStream random;
  // Chromosomes of one and two markers, and the end markers of a longer one, are never
  // tested, however unlikely they look.
  std::vector<ChromosomeRecord> chroms{Chromosome({0}), Chromosome({0, 0.01f}), Chromosome({0, 0.01f, 0.02f})};
  std::vector<std::string> rows(200, "A" "AB" "BAA");
  for (int i = 0; i < 100; ++i) rows[i] = "B" "BA" "AAB";
  std::string matrix = MarkersMajor(rows);
  const std::string input = matrix;
  EXPECT_EQ(Scan(f2, chroms, matrix, 200, random), 0);
  EXPECT_EQ(matrix, input);
  // Two suspect genotypes in a row: once the first is flagged, the second is tested against
  // the same left neighbour, and both go. (The default stream starts with a number below
  // 1e-6, which would keep anything; start elsewhere.)
  random.SetSeed({12345, 67890});
  chroms = {Chromosome({0, 0.01f, 0.02f, 0.03f, 0.04f})};
  matrix = "A" "B" "H" "A" "A";
  EXPECT_EQ(Scan(f2, chroms, matrix, 1, random), 2);
  EXPECT_EQ(matrix, "AXXAA");
}

TEST(ErrorScan, MissingInputIsFilledButNeverCounted) {
  // Simulated F2 with gaps: the count is exactly the cells that went from a letter to X.
  const PopulationModel f2{10, 7, 1};
  std::mt19937 gen(5);
  const int n = 300;
  std::vector<std::string> rows(n, std::string(20, 'A'));
  for (auto& row : rows)
    for (char& g : row) g = "AHBXX"[gen() % 5];  // random, so many disagree
  std::string matrix = MarkersMajor(rows);
  const std::string input = matrix;
  UniformStream random;
  const int64_t count = Scan(f2, {Chromosome(std::vector<float>(20, 0.0f))}, matrix, n, random);
  int64_t changed = 0;
  for (std::size_t k = 0; k < matrix.size(); ++k) {
    if (input[k] == 'X') EXPECT_EQ(matrix[k], 'X');
    else if (matrix[k] == 'X') ++changed;
    else EXPECT_EQ(matrix[k], input[k]);
  }
  EXPECT_EQ(count, changed);
  EXPECT_GT(count, 0);
}

TEST(ErrorScan, MonomorphicMarkersAfterCorrection) {
  // Per marker, 4 individuals: A and X only; H only; D and B (D counts for no class); all X.
  const std::vector<uint8_t> flags = MonomorphicMarkers("AXAX" "HHHH" "DBBB" "XXXX" "AHXB", 4);
  EXPECT_EQ(flags, (std::vector<uint8_t>{1, 1, 0, 1, 0}));
}

// F2 individuals along chromosomes of evenly spaced markers, markers-major.
std::string SimulateF2(int n, int chromosomes, int markers, float spacing) {
  std::vector<testing::SimulatedMarker> spots;
  for (int k = 0; k < markers; ++k) spots.push_back({std::to_string(k), k * spacing});
  std::string matrix;
  for (int c = 0; c < chromosomes; ++c)
    for (const std::string& marker : testing::SimulateF2Chromosome(spots, n, 0.0, 2024 + c)) matrix += marker;
  return matrix;
}

TEST(ErrorScan, FindsMostGenotypesChangedInASimulatedF2) {
  const int n = 300, chromosomes = 3, markers = 40;
  const float spacing = 2.5f;
  std::mt19937_64 gen(2024);
  std::string matrix = SimulateF2(n, chromosomes, markers, spacing);
  // One genotype in a hundred is changed to one of the other two.
  std::vector<uint8_t> changed(matrix.size());
  for (std::size_t k = 0; k < matrix.size(); ++k) {
    if (gen() % 100 != 0) continue;
    const std::string others = matrix[k] == 'A' ? "HB" : matrix[k] == 'H' ? "AB" : "AH";
    matrix[k] = others[gen() % 2];
    changed[k] = 1;
  }
  std::vector<float> positions;
  for (int k = 0; k < markers; ++k) positions.push_back(k * spacing);
  const std::vector<ChromosomeRecord> chroms(chromosomes, Chromosome(positions));
  UniformStream random;
  std::string scanned = matrix;
  Scan({10, 7, 2}, chroms, scanned, n, random);
  double hit = 0, errors = 0, false_flags = 0, clean = 0;
  for (std::size_t k = 0; k < matrix.size(); ++k) {
    const bool flagged = scanned[k] == 'X';
    if (changed[k]) { ++errors; hit += flagged; }
    else { ++clean; false_flags += flagged; }
  }
  RecordProperty("share_of_changed_flagged", std::to_string(hit / errors));
  RecordProperty("share_of_clean_flagged", std::to_string(false_flags / clean));
  EXPECT_GT(hit / errors, 0.7);
  EXPECT_LT(false_flags / clean, 0.005);
  // A fresh stream with the default seeds flags the same cells again; another seed does not.
  UniformStream again;
  std::string rescanned = matrix;
  Scan({10, 7, 2}, chroms, rescanned, n, again);
  EXPECT_EQ(rescanned, scanned);
  UniformStream other;
  other.SetSeed({12345, 67890});
  rescanned = matrix;
  Scan({10, 7, 2}, chroms, rescanned, n, other);
  EXPECT_NE(rescanned, scanned);
}

TEST(ErrReport, ListsErrorsByIndividualAndByMarker) {
  // Three individuals, two markers (input numbers 5 and 9). Individual 3's X at marker 1 was
  // missing in the input, so it is no error although the corrected cell is X.
  const std::vector<std::string> names{"M1", "Marker_two"};
  const std::vector<int32_t> numbers{5, 9};
  const std::string text = ErrReportText(3, names, numbers, "AHX" "BBA", "XHX" "BXX");
  const std::string gap(26, ' ');
  const std::string expected =
      "!Potential genotyping errors per individual\n"
      "   IndivID  Errors    MkID  MkType    MkID  MkType\n"
      "         1       1       5       A\n"
      "         2       1       9       B\n"
      "         3       1       9       A\n"
      "TotalError       3\n"
      "ErrorRate   0.5000\n"
      "\n"
      "!Potential genotyping errors per marker\n"
      "MarkerName" + gap + "    MkID  Errors IndivID  MkType IndivID  MkType\n"
      // A35 name, one blank, then I8 fields: the number's last digit is in column 44.
      "M1" + std::string(41, ' ') + "5       1       1       A\n"
      "Marker_two" + std::string(33, ' ') + "9       2       2       B       3       A\n"
      "TotalError" + gap + "       3\n"
      "ErrorRate " + gap + "  0.5000\n";
  EXPECT_EQ(text, expected);
}

TEST(ErrReport, NoErrorGivesBothHeadersAndAZeroRate) {
  const std::vector<std::string> names{"M1"};
  const std::vector<int32_t> numbers{1};
  const std::string text = ErrReportText(2, names, numbers, "AX", "AX");
  EXPECT_NE(text.find("TotalError       0\nErrorRate   0.0000\n\n!Potential genotyping errors per marker\n"),
            std::string::npos);
  const std::string last = "ErrorRate " + std::string(26, ' ') + "  0.0000\n";
  EXPECT_EQ(text.substr(text.size() - last.size()), last);
  // No linked marker at all: the rate is 0, not 0/0.
  EXPECT_NE(ErrReportText(2, {}, {}, "", "").find("ErrorRate   0.0000"), std::string::npos);
}

}  // namespace
}  // namespace gae
