// Pure-line results: the segregation test by hand, the marker table's columns, and the written
// files EC.plm and .plq taken back by the readers of the map tool and of the QTL tool.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "report/downstream_files.h"
#include "report/pure_line_reports.h"
#include "report/pure_line_segregation.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

TEST(PureLineSegregation, HandComputedTests) {
  // ABAB: two groups of two founders; 30 A, 10 B and 5 X. Each expects 40 x 2 / 4 = 20.
  std::string letters = std::string(30, 'A') + std::string(10, 'B') + std::string(5, 'X');
  PureLineSegregation t = PureLineSegregationChiSquare(4, 1212, letters.data(), 45);
  EXPECT_EQ(t.counts[0], 30);
  EXPECT_EQ(t.counts[1], 10);
  EXPECT_EQ(t.counts[8], 5);
  EXPECT_FLOAT_EQ(t.chi_square, 10.0f);
  EXPECT_NEAR(t.probability, 0.001565, 1e-5);  // 1 degree of freedom

  // ABCB over 7 lines: expected counts 7/4, 14/4, 7/4 truncate to 1, 3, 1.
  letters = "AABBBCC";
  t = PureLineSegregationChiSquare(4, 1232, letters.data(), 7);
  EXPECT_FLOAT_EQ(t.chi_square, 2.0f);
  EXPECT_NEAR(t.probability, std::exp(-1.0), 1e-5);  // 2 degrees of freedom

  // Eight founders all apart with equal counts: nothing to test against.
  letters = "ABCDEFGHHGFEDCBA";
  t = PureLineSegregationChiSquare(8, 12345678, letters.data(), 16);
  EXPECT_EQ(t.chi_square, 0.0f);
  EXPECT_NEAR(t.probability, 1.0, 1e-6);

  // Fewer lines than founders: groups of one founder expect no line, and the test is NaN.
  letters = "AB";
  t = PureLineSegregationChiSquare(4, 1234, letters.data(), 2);
  EXPECT_TRUE(std::isnan(t.chi_square));
  EXPECT_TRUE(std::isnan(t.probability));

  EXPECT_EQ(PureLineCategoryText(4, 1234), "A");
  EXPECT_EQ(PureLineCategoryText(4, 1212), "AC");
  EXPECT_EQ(PureLineCategoryText(8, 12314156), "ADF");
  EXPECT_EQ(PureLinePatternField(4, 1232), "ABCB");
  EXPECT_EQ(PureLinePatternField(8, 12345678), "ABCDEFGH");
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
  std::vector<std::string> lines;
  std::string text = PlmMtpReport(map);
  for (std::size_t a = 0, b; (b = text.find('\n', a)) != std::string::npos; a = b + 1)
    lines.push_back(text.substr(a, b - a));
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
  text = PlmMtpReport(map);
  EXPECT_EQ(text.substr(0, text.find('\n')).size(), 12u + 1 + 35 + 12 * 12);
  EXPECT_NE(text.find("     Size(H)     Size(X)"), std::string::npos);
}

class PureLineWrittenFiles : public testing::InTempDir {
 protected:
  LinkedMapRecord Map() {
    LinkedMapRecord map;
    map.population_type = 2;
    map.mapping_function = 1;
    map.space_type = 1;
    map.num_individuals = 5;
    map.chromosome_names = {"Group1", "Group2"};
    map.chromosome_sizes = {2, 1};
    map.marker_names = {"pm_a", "pm_b", "pm_c"};
    map.positions = {0.0f, 7.5f, 0.0f};
    return map;
  }
  const std::vector<std::string> categories_{"ABCD", "ABAB", "AACD"};
  const std::string genotypes_ = "ABCDA" "ABBAX" "ACDDC";
};

TEST_F(PureLineWrittenFiles, EcPlmIsAMapToolInputWithoutTheMarkersThatLostTheirAlleles) {
  const std::vector<uint8_t> lost = {0, 1, 0};
  testing::WriteText("outEC.plm", EcPlmText(Map(), categories_, genotypes_, lost));
  InputFile in;
  ASSERT_TRUE(in.Open("outEC.plm"));
  MapToolInput data;
  ReadMapToolInput(in, 30, data);
  ASSERT_EQ(MessageCode(), 0);
  EXPECT_EQ(data.population_type, 2);
  EXPECT_EQ(data.num_markers, 2);
  EXPECT_EQ(data.population_size, 5);
  EXPECT_EQ(data.markers.categories, (std::vector<int32_t>{1234, 1134}));
  EXPECT_EQ(std::string(data.markers.types.begin(), data.markers.types.end()), "ABCDA" "ACDDC");
  EXPECT_EQ(data.anchors, (std::vector<int32_t>{1, 2}));
  const std::string text = testing::ReadText("outEC.plm");
  EXPECT_NE(text.find("\nABCD        pm_a" + std::string(31, ' ') + "  A B C D A\n"), std::string::npos);
}

}  // namespace
}  // namespace gae
