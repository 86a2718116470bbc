// Exact pair estimates on bred data sets of several chromosomes: markers on different
// chromosomes never reach LOD 4, while neighbours on one chromosome stand far above it. Chance
// pairs that cleared such LODs (a start trapped at a border, a complete-data LOD) once merged
// chromosomes.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "twopoint/clonal_two_point.h"
#include "twopoint/exact_clonal.h"
#include "twopoint/exact_pure_line.h"
#include "twopoint/exact_two_point.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

struct LodSpread {
  double across = 0;      // highest LOD of two markers on different chromosomes
  double neighbours = 0;  // mean LOD of adjacent markers on one chromosome
};

// `lod(i, j)` over all pairs of `names` (C01M001 ...).
LodSpread Spread(const std::vector<std::string>& names, const std::function<double(int, int)>& lod) {
  LodSpread s;
  int adjacent = 0;
  for (std::size_t i = 1; i < names.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const bool same = names[i].substr(0, 3) == names[j].substr(0, 3);
      if (!same) {
        s.across = std::max(s.across, lod(static_cast<int>(i), static_cast<int>(j)));
      } else if (i == j + 1) {
        s.neighbours += lod(static_cast<int>(i), static_cast<int>(j));
        ++adjacent;
      }
    }
  }
  s.neighbours /= std::max(1, adjacent);
  return s;
}

TEST(ExactEstimatesOnBredData, BiparentalPairsAcrossChromosomesStayBelowLod4) {
  for (int type : {1, 3, 4, 7, 8, 13, 15, 17}) {
    SCOPED_TRACE("type " + std::to_string(type));
    testing::BiparentalData data = testing::SimulateBiparentalData(type, 4, 25, 4.0, 200, 0.01, 0.02, 40 + type);
    // Where selfing shows all three genotypes, some markers are dominant or recessive.
    const bool selfed = type == 7 || type == 8 || (type >= 13 && type <= 16);
    std::vector<int> kind(data.names.size(), 1);
    for (std::size_t m = 0; selfed && m < kind.size(); ++m) {
      if (m % 3 == 1) kind[m] = 12;
      if (m % 5 == 2) kind[m] = 10;
      for (char& g : data.letters[m]) {
        if (kind[m] == 12 && (g == 'A' || g == 'H')) g = 'D';
        if (kind[m] == 10 && (g == 'B' || g == 'H')) g = 'R';
      }
    }
    const LodSpread s = Spread(data.names, [&](int i, int j) {
      int code = PairCode(kind[i], kind[j]);
      const bool exchanged = code == 121 || code == 101 || code == 1012;
      float cells[9];
      const std::string& a = data.letters[exchanged ? j : i];
      const std::string& b = data.letters[exchanged ? i : j];
      PairCounts(static_cast<int>(a.size()), a.data(), b.data(), cells);
      return ExactTwoPointEstimate(type, code, cells).lod;
    });
    EXPECT_LE(s.across, 4.0);
    EXPECT_GT(s.neighbours, 4.0);
  }
}

TEST(ExactEstimatesOnBredData, PureLinePairsAcrossChromosomesStayBelowLod4) {
  const std::vector<int32_t> four = {1234, 1212, 1233, 1134, 1221, 1232, 1222, 1231};
  const std::vector<int32_t> eight = {12345678, 12121212, 12341234, 11111118, 12211221,
                                      12222222, 12312312, 11335577, 12345671, 12121121};
  for (int type = 1; type <= 4; ++type) {
    SCOPED_TRACE("type " + std::to_string(type));
    const int f = type <= 2 ? 4 : 8;
    const testing::PureLineData data =
        testing::SimulatePureLineData(type, 3, 30, 3.0, 150, f == 4 ? four : eight, 0.03, 60 + type);
    const LodSpread s = Spread(data.names, [&](int i, int j) {
      const PureLinePairClasses classes = BuildPairClasses(f, data.patterns[i], data.patterns[j]);
      float cells[64] = {}, counts[64] = {};
      for (std::size_t l = 0; l < data.letters[i].size(); ++l) {
        const int a = data.letters[i][l] - 'A', b = data.letters[j][l] - 'A';
        if (a >= 0 && a < f && b >= 0 && b < f) cells[a * f + b] += 1;
      }
      for (int c = 0; c < classes.num_classes; ++c) counts[c] = cells[classes.classes[c].head];
      return ExactPureLinePair(type, classes, counts).lod;
    });
    EXPECT_LE(s.across, 4.0);
    EXPECT_GT(s.neighbours, 4.0);
  }
}

TEST(ExactEstimatesOnBredData, ClonalPairsAcrossChromosomesStayBelowLod4) {
  static const std::map<std::string, char> kLetter = {
      {"AC", 'A'}, {"AD", 'B'}, {"BC", 'C'}, {"BD", 'D'}, {"XC", 'E'}, {"XD", 'F'},
      {"AX", 'G'}, {"BX", 'H'}, {"AA", 'I'}, {"AB", 'J'}, {"BB", 'K'}, {"XX", 'X'}};
  for (const int population : {1, 2}) {
    SCOPED_TRACE(population == 1 ? "clonal F1" : "double cross");
    std::vector<std::string> names, letters;
    std::vector<int> category;
    for (int c = 0; c < 3; ++c) {
      std::vector<testing::SimulatedClonalMarker> markers;
      for (int k = 0; k < 20; ++k) {
        testing::SimulatedClonalMarker m;
        m.name = "C0" + std::to_string(c + 1) + "M" + std::to_string(k);
        m.position_cm = 5.0 * k;
        m.category = 1 + (k * 7 + c) % (population == 1 ? 4 : 5);
        m.first_phase = (k / 3) % 2;
        m.second_phase = (k / 4) % 2;
        markers.push_back(m);
      }
      const auto types = testing::SimulateClonalChromosome(markers, 200, 0.02, 90 + c);
      for (std::size_t k = 0; k < markers.size(); ++k) {
        names.push_back(markers[k].name);
        category.push_back(markers[k].category);
        std::string row;
        for (const std::string& t : types[k]) row += kLetter.at(t);
        letters.push_back(row);
      }
    }
    const LodSpread s = Spread(names, [&](int i, int j) {
      if (category[j] < category[i]) std::swap(i, j);
      float cells[16];
      CDMPairCounts(static_cast<int64_t>(letters[i].size()), letters[i].data(), letters[j].data(), cells);
      return ExactClonalPair(population == 1, category[i], category[j], cells).lod_c;
    });
    EXPECT_LE(s.across, 4.0);
    EXPECT_GT(s.neighbours, 4.0);
  }
}

}  // namespace
}  // namespace gae
