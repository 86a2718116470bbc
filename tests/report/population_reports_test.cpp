// The reports particular to a population: the segregation tests by hand, the clonal parents'
// maps, and the pure-line marker table with the written files EC.plm and .plq taken back by the
// readers of the map tool and of the QTL tool.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "report/clonal_reports.h"
#include "report/downstream_files.h"
#include "report/pure_line_reports.h"
#include "report/pure_line_segregation.h"
#include "report/segregation.h"
#include "support/temp_dir.h"
#include "twopoint/mapping_function.h"
#include "vocabulary/pair_index.h"

namespace gae {
namespace {

using testing::SplitLines;

std::string Letters(int a, int h, int b, int d, int r, int x) {
  return std::string(a, 'A') + std::string(h, 'H') + std::string(b, 'B') + std::string(d, 'D') +
         std::string(r, 'R') + std::string(x, 'X');
}

// The upper tail of the chi-square distribution in closed form: exp(-x/2) for two degrees of
// freedom, erfc(sqrt(x/2)) for one.
double UpperTail(double x, int df) { return df == 2 ? std::exp(-x / 2) : std::erfc(std::sqrt(x / 2)); }

TEST(Segregation, PartialScoresFoldByPopulation) {
  // One A, two H, three B, four D, five R, six X: in a backcross to P1 R is the heterozygote,
  // in one to P2 D is.
  const std::string g = Letters(1, 2, 3, 4, 5, 6);
  const int cases[][4] = {{1, 1 + 4, 2 + 5, 3}, {10, 1, 2 + 4, 3 + 5}, {7, 1 + 4, 2, 3 + 5}};
  for (const auto& [type, n2, n1, n0] : cases) {
    const SegregationCounts c = CountSegregation(type, g.data(), g.size());
    EXPECT_EQ(std::vector<int>({c.n2, c.n1, c.n0, c.nx}), std::vector<int>({n2, n1, n0, 6})) << type;
  }
}

struct Case {
  int type, marker_class, a, h, b, d, r, x;
  double chi;  // worked out by hand from the classes the population tests
  int df;
};

TEST(Segregation, ChiSquareAndItsProbabilityByPopulationAndMarkerClass) {
  const Case cases[] = {
      // Backcross to P1: A against H, 1:1. (6-5)^2/5 twice.
      {1, 1, 6, 4, 0, 0, 0, 3, 0.4, 1},
      // Backcross to P2: H against B.
      {2, 1, 0, 7, 13, 0, 0, 0, (7 - 10.0) * (7 - 10.0) / 10 * 2, 1},
      // Doubled haploids: A against B, the heterozygote never counts.
      {3, 1, 30, 5, 10, 0, 0, 0, 2 * 100.0 / 20, 1},
      // P1BC1RIL: 3:1.
      {5, 1, 15, 0, 5, 0, 0, 0, 0.0, 1},
      // F2 co-dominant 1:2:1 with two degrees of freedom: 25 / 25 + 25 / 50 + 0.
      {7, 1, 30, 45, 25, 0, 0, 4, 25.0 / 25 + 25.0 / 50, 2},
      // F2 dominant: D and H together against B, 3:1; here 66 vs 34 of 100.
      {7, 12, 0, 0, 34, 66, 0, 0, 81.0 / 75 + 81.0 / 25, 1},
      // F2 recessive: A against R and H together, 1:3; 20 vs 80 of 100.
      {7, 10, 20, 0, 0, 0, 80, 0, 25.0 / 25 + 25.0 / 75, 1},
      // F3 co-dominant 3:2:3 over 8 individuals.
      {8, 1, 3, 2, 3, 0, 0, 0, 0.0, 2},
      // P1BC2F2 co-dominant 13:2:1 over 16: observed 10, 4, 2.
      {15, 1, 10, 4, 2, 0, 0, 0, 9.0 / 13 + 4.0 / 2 + 1.0 / 1, 2},
      // P2BC2DH: 1:7.
      {20, 1, 2, 0, 14, 0, 0, 0, 0.0, 1},
      {4, 1, 12, 0, 8, 0, 0, 2, 0.4 + 0.4, 1},                 // RIL 1:1
      {6, 1, 5, 0, 15, 0, 0, 0, 0.0, 1},                       // P2BC1RIL 1:3
      {9, 1, 28, 12, 0, 0, 0, 0, 4.0 / 30 + 4.0 / 10, 1},      // P1BC2F1 A:H 3:1
      {10, 1, 0, 10, 30, 0, 0, 0, 0.0, 1},                     // P2BC2F1 H:B 1:3
      {11, 1, 14, 0, 2, 0, 0, 0, 0.0, 1},                      // P1BC2RIL 7:1
      {12, 1, 4, 0, 12, 0, 0, 0, 4.0 / 2 + 4.0 / 14, 1},       // P2BC2RIL 1:7
      {13, 1, 10, 4, 2, 0, 0, 0, 0.0, 2},                      // P1BC1F2 5:2:1
      {13, 12, 0, 0, 4, 12, 0, 0, 4.0 / 14 + 4.0 / 2, 1},      // D against B, 7:1
      {13, 10, 10, 0, 0, 0, 6, 0, 0.0, 1},                     // A against R, 5:3
      {14, 1, 2, 4, 10, 0, 0, 0, 0.0, 2},                      // P2BC1F2 1:2:5
      {16, 1, 1, 2, 13, 0, 0, 0, 0.0, 2},                      // P2BC2F2 1:2:13
      {17, 1, 15, 0, 5, 0, 0, 0, 0.0, 1},                      // P1BC1DH 3:1
      {18, 1, 6, 0, 14, 0, 0, 0, 1.0 / 5 + 1.0 / 15, 1},       // P2BC1DH 1:3
      {19, 1, 16, 0, 0, 0, 0, 0, 4.0 / 14 + 4.0 / 2, 1},       // P1BC2DH 7:1
  };
  for (const Case& c : cases) {
    const std::string g = Letters(c.a, c.h, c.b, c.d, c.r, c.x);
    const SegregationTest t = SegregationChiSquare(c.type, c.marker_class, g.data(), g.size());
    ASSERT_TRUE(t.tested);
    EXPECT_NEAR(t.chi_square, c.chi, 1e-4) << c.type << "/" << c.marker_class;
    EXPECT_NEAR(t.probability, UpperTail(c.chi, c.df), 1e-5) << c.type << "/" << c.marker_class;
  }
}

TEST(Segregation, EmptyClassesGiveNotANumberAndAZeroProbability) {
  // A backcross marker with neither the P1 class nor the heterozygote: nothing to test.
  const std::string g = Letters(0, 0, 0, 0, 0, 5);
  const SegregationTest t = SegregationChiSquare(1, 1, g.data(), g.size());
  EXPECT_TRUE(std::isnan(t.chi_square));
  EXPECT_EQ(t.probability, 0.0f);
  // A strongly distorted marker has a probability that prints as 0.0000.
  const std::string skewed = Letters(500, 0, 20, 0, 0, 0);
  EXPECT_LT(SegregationChiSquare(4, 1, skewed.data(), skewed.size()).probability, 0.00005f);
  // A class the population cannot test leaves the test undone.
  EXPECT_FALSE(SegregationChiSquare(7, 3, skewed.data(), skewed.size()).tested);
}

double Field(const std::string& line, int start, int width) { return std::stod(line.substr(start, width)); }

// Seven-word records whose parental frequencies the test chooses.
struct Store {
  explicit Store(int m) : words(7 * PairCount(m), 0.0f) {
    for (size_t k = 0; k < words.size(); k += 7) words[k + 1] = words[k + 4] = words[k + 5] = 0.5f;
  }
  void Set(int i, int j, float ra, float rb) {
    float* r = words.data() + 7 * (GroupPairIndex(i, j) - 1);
    r[1] = 0.5f * (ra + rb);
    r[4] = ra;
    r[5] = rb;
  }
  PairTable Table() const {
    PairTable t;
    t.records = words.data();
    t.num_records = static_cast<int64_t>(words.size() / 7);
    t.record_length = 7;
    return t;
  }
  std::vector<float> words;
};

ClonalLayout SmallMap() {
  ClonalLayout map;
  map.population_type = 1;
  map.mapping_function = 1;
  map.num_individuals = 4;
  for (const char* name : {"P1", "P2", "P3", "P4", "Q1", "Q2"}) map.marker_names.push_back(name + std::string(33, ' '));
  map.category = {1, 2, 1, 1, 2, 2};
  const std::string types = "ABCD" "EFEF" "ABCD" "ABCD" "EEFF" "FFEE";
  map.types.assign(types.begin(), types.end());
  map.num_markers = map.num_mapped = 6;
  map.anchor.assign(6, 0);
  map.chromosome_names = {"Chromsome1" + std::string(9, ' '), "Chromsome2" + std::string(9, ' ')};
  map.chromosome_sizes = {4, 2};
  map.order = {1, 2, 3, 4, 5, 6};
  map.position = {0.0f, 3.0f, 8.0f, 10.0f, 0.0f, 4.0f};
  return map;
}

TEST(ClonalReports, ParentalPositionsComeFromTheParentOrFromTheMap) {
  const ClonalLayout map = SmallMap();
  Store store(6);
  store.Set(3, 1, 0.2f, 0.3f);   // not neighbours in the map (P2 lies between): map distance
  store.Set(4, 3, 0.5f, 0.1f);   // the first parent says nothing: map distance
  store.Set(2, 1, 0.5f, 0.05f);
  store.Set(3, 2, 0.5f, 0.5f);   // the second parent's 1/2: map distance
  const PairTable pairs = store.Table();
  const SummaryTable first = ClonalSummary(map, pairs, ClonalView::kFirstParent);
  ASSERT_EQ(first.rows.size(), 3u);  // P2, Q1, Q2 do not segregate in the first parent
  EXPECT_FLOAT_EQ(first.rows[1].interval, 8.0f);
  EXPECT_FLOAT_EQ(first.rows[1].rec_freq, MapDistanceToRec(1, 8.0f));
  EXPECT_FLOAT_EQ(first.rows[2].position, 10.0f);
  EXPECT_EQ(first.chromosome_markers, (std::vector<int32_t>{3, 0}));
  EXPECT_EQ(first.chromosome_lengths[1], 0.0f);
  const SummaryTable second = ClonalSummary(map, pairs, ClonalView::kSecondParent);
  ASSERT_EQ(second.rows.size(), 6u);
  EXPECT_FLOAT_EQ(second.rows[1].interval, MapRecToDistance(1, 0.05f));
  EXPECT_FLOAT_EQ(second.rows[1].rec_freq, 0.05f);
  EXPECT_FLOAT_EQ(second.rows[2].interval, 5.0f);
  EXPECT_FLOAT_EQ(second.rows[3].position, MapRecToDistance(1, 0.05f) + 5.0f + MapRecToDistance(1, 0.1f));
  EXPECT_FLOAT_EQ(second.chromosome_lengths[0], second.rows[3].position);
  // The file: six columns, no interference, and a whole-genome row of the listed markers.
  const std::vector<std::string> lines = SplitLines(SummaryText(map, first));
  EXPECT_EQ(lines[0].size(), 120u);
  EXPECT_EQ(lines[0].substr(100), "      RecomFrequency");
  EXPECT_EQ(Field(lines[3], 80, 20), 10.0);
  const auto whole = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("         WholeGenome", 0) == 0; });
  ASSERT_NE(whole, lines.end());
  EXPECT_EQ(Field(*whole, 40, 20), 3);
  // The marker table: the four types of an ABCD marker at 1:1:1:1 and of an A=B marker at 1:1.
  const std::vector<std::string> mtp = SplitLines(ClonalMtpReport(map));
  ASSERT_EQ(mtp.size(), 7u);
  EXPECT_EQ(mtp[1].substr(48, 48), std::string(11, ' ') + "1" + std::string(11, ' ') + "1" + std::string(11, ' ') + "1" + std::string(11, ' ') + "1");
  EXPECT_EQ(Field(mtp[1], 192, 12), 0.0);
  EXPECT_EQ(mtp[1].substr(216), "        ABCD");
  EXPECT_EQ(mtp[2].substr(216), "         A=B");
}

TEST(ClonalReports, MarkerTableListsTheLinkedMarkersInMapOrder) {
  ClonalLayout map = SmallMap();
  map.num_mapped = 4;
  map.num_unlinked = 1;
  map.order = {3, 1, 5, 2, 4, 6};  // P4 unlinked, Q2 deleted
  map.chromosome_sizes = {2, 2};
  map.position = {0.0f, 5.0f, 0.0f, 2.0f};
  const std::vector<std::string> mtp = SplitLines(ClonalMtpReport(map));
  ASSERT_EQ(mtp.size(), 5u);
  // Each row: the input number, the name, and the marker's own counts (AC, ..., XD, ...).
  const struct {
    int number;
    const char* name;
    int ac, xc, xd;
  } rows[] = {{3, "P3", 1, 0, 0}, {1, "P1", 1, 0, 0}, {5, "Q1", 0, 2, 2}, {2, "P2", 0, 2, 2}};
  for (int k = 0; k < 4; ++k) {
    const std::string& line = mtp[k + 1];
    EXPECT_EQ(Field(line, 0, 12), rows[k].number) << k;
    EXPECT_EQ(line.substr(13, 35), std::string(33, ' ') + rows[k].name) << k;
    EXPECT_EQ(Field(line, 48, 12), rows[k].ac) << k;
    EXPECT_EQ(Field(line, 96, 12), rows[k].xc) << k;
    EXPECT_EQ(Field(line, 108, 12), rows[k].xd) << k;
  }
}

TEST(ClonalReports, SegregationTestByHand) {
  ClonalLayout map = SmallMap();
  map.num_individuals = 100;
  map.num_markers = map.num_mapped = 1;
  map.order = {1};
  map.category = {1};
  const std::string types = std::string(10, 'A') + std::string(20, 'B') + std::string(30, 'C') + std::string(40, 'D');
  map.types.assign(types.begin(), types.end());
  const std::vector<std::string> mtp = SplitLines(ClonalMtpReport(map));
  // Expected 25 each: (15² + 5² + 5² + 15²) / 25 = 20 on 3 degrees of freedom.
  EXPECT_NEAR(Field(mtp[1], 192, 12), 20.0, 1e-4);
  EXPECT_NEAR(Field(mtp[1], 204, 12), 0.0002, 1e-4);
}

TEST(PureLineSegregation, HandComputedTests) {
  const struct {
    int founders, pattern;
    std::string letters;
    float chi;
    double p;
  } cases[] = {
      // ABAB: 30 A, 10 B, 5 X; each group expects 40 x 2 / 4 = 20; 1 degree of freedom.
      {4, 1212, std::string(30, 'A') + std::string(10, 'B') + std::string(5, 'X'), 10.0f, 0.001565},
      {4, 1232, "AABBBCC", 2.0f, std::exp(-1.0)},  // ABCB over 7: 7/4, 14/4, 7/4 truncate to 1, 3, 1
      {8, 12345678, "ABCDEFGHHGFEDCBA", 0.0f, 1.0},  // all apart, equal counts
      {4, 1234, "AB", NAN, NAN},  // fewer lines than founders: groups of one expect no line
  };
  for (const auto& c : cases) {
    const PureLineSegregation t =
        PureLineSegregationChiSquare(c.founders, c.pattern, c.letters.data(), static_cast<int>(c.letters.size()));
    if (std::isnan(c.chi)) {
      EXPECT_TRUE(std::isnan(t.chi_square) && std::isnan(t.probability)) << c.pattern;
    } else {
      EXPECT_FLOAT_EQ(t.chi_square, c.chi) << c.pattern;
      EXPECT_NEAR(t.probability, c.p, 1e-5) << c.pattern;
    }
  }
  const PureLineSegregation abab = PureLineSegregationChiSquare(4, 1212, cases[0].letters.data(), 45);
  EXPECT_EQ(std::vector<int>({abab.counts[0], abab.counts[1], abab.counts[8]}), std::vector<int>({30, 10, 5}));
  EXPECT_EQ(PureLineCategoryText(4, 1234) + " " + PureLineCategoryText(4, 1212) + " " + PureLineCategoryText(8, 12314156),
            "A AC ADF");
  EXPECT_EQ(PureLinePatternField(4, 1232) + " " + PureLinePatternField(8, 12345678), "ABCB ABCDEFGH");
}

TEST(PureLineMarkerTable, ColumnsOfFourAndEightFounders) {
  MapLayout map;
  map.num_individuals = 6;
  map.marker_names = {"first", "second", "third"};
  map.marker_class = {1234, 1212, 1233};
  const std::string types = "ABCDXA" "AAAAAC" "ABCCCX";
  map.types.assign(types.begin(), types.end());
  map.num_markers = 3;
  map.num_mapped = 2;
  map.num_unlinked = 1;
  map.chromosome_sizes = {2};
  map.order = {3, 1, 2};
  map.position = {0.0f, 5.0f};
  map.population_type = 2;
  const std::vector<std::string> lines = SplitLines(PlmMtpReport(map));
  ASSERT_EQ(lines.size(), 3u);  // the header and the two linked markers, in map order
  EXPECT_EQ(lines[0].size(), 12u + 1 + 35 + 8 * 12);
  EXPECT_EQ(lines[0].substr(48, 12), "     Size(A)");
  EXPECT_EQ(lines[0].substr(48 + 4 * 12, 12), "     Size(X)");
  EXPECT_EQ(lines[0].substr(48 + 7 * 12, 12), "    Category");
  // Marker 3 (ABCC): A 1, B 1, C 3, D 0, X 1; groups expect 1, 1, 2 of 5 lines.
  EXPECT_EQ(lines[1].substr(0, 12), "           3");
  EXPECT_EQ(lines[1].substr(13, 35), std::string(30, ' ') + "third");
  EXPECT_EQ(lines[1].substr(48, 60), "           1           1           3           0           1");
  EXPECT_EQ(lines[1].substr(108, 12), "      0.5000");
  EXPECT_EQ(lines[1].substr(132, 12), "           A");
  EXPECT_EQ(lines[2].substr(0, 12), "           1");
  map.population_type = 4;
  map.marker_class = {12345678, 12121212, 12345677};
  const std::string text = PlmMtpReport(map);
  EXPECT_EQ(text.substr(0, text.find('\n')).size(), 12u + 1 + 35 + 12 * 12);
  EXPECT_NE(text.find("     Size(H)     Size(X)"), std::string::npos);
}

using PureLineWrittenFiles = testing::InTempDir;

TEST_F(PureLineWrittenFiles, EcPlmIsAMapToolInputWithoutTheMarkersThatLostTheirAlleles) {
  LinkedMapRecord map;
  map.population_type = 2;
  map.mapping_function = map.space_type = 1;
  map.num_individuals = 5;
  map.chromosome_names = {"Group1", "Group2"};
  map.chromosome_sizes = {2, 1};
  map.marker_names = {"pm_a", "pm_b", "pm_c"};
  map.positions = {0.0f, 7.5f, 0.0f};
  const std::vector<std::string> categories = {"ABCD", "ABAB", "AACD"};
  const std::vector<uint8_t> lost = {0, 1, 0};
  testing::WriteText("outEC.plm", EcPlmText(map, categories, "ABCDA" "ABBAX" "ACDDC", lost));
  InputFile in;
  ASSERT_TRUE(in.Open("outEC.plm"));
  MapToolInput data;
  ReadMapToolInput(in, 30, data);
  ASSERT_EQ(MessageCode(), 0);
  EXPECT_EQ(std::vector<int>({data.population_type, data.num_markers, data.population_size}), std::vector<int>({2, 2, 5}));
  EXPECT_EQ(data.markers.categories, (std::vector<int32_t>{1234, 1134}));
  EXPECT_EQ(std::string(data.markers.types.begin(), data.markers.types.end()), "ABCDA" "ACDDC");
  EXPECT_EQ(data.anchors, (std::vector<int32_t>{1, 2}));
  const std::string text = testing::ReadText("outEC.plm");
  EXPECT_NE(text.find("\nABCD        pm_a" + std::string(31, ' ') + "  A B C D A\n"), std::string::npos);
}

}  // namespace
}  // namespace gae
