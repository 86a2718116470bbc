#include "report/clonal_reports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

#include "vocabulary/pair_index.h"
#include "twopoint/mapping_function.h"

namespace gae {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::stringstream in(text);
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
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
  store.Set(4, 3, 0.5f, 0.1f);
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
  const std::vector<std::string> lines = Lines(SummaryText(map, first));
  EXPECT_EQ(lines[0].size(), 120u);
  EXPECT_EQ(lines[0].substr(100), "      RecomFrequency");
  EXPECT_EQ(Field(lines[3], 80, 20), 10.0);
  const auto whole = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("         WholeGenome", 0) == 0; });
  ASSERT_NE(whole, lines.end());
  EXPECT_EQ(Field(*whole, 40, 20), 3);

  // The marker table: the four types of an ABCD marker at 1:1:1:1 and of an A=B marker at 1:1.
  const std::vector<std::string> mtp = Lines(ClonalMtpReport(map));
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
  const std::vector<std::string> mtp = Lines(ClonalMtpReport(map));
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
  const std::vector<std::string> mtp = Lines(ClonalMtpReport(map));
  // Expected 25 each: (15² + 5² + 5² + 15²) / 25 = 20 on 3 degrees of freedom.
  EXPECT_NEAR(Field(mtp[1], 192, 12), 20.0, 1e-4);
  EXPECT_NEAR(Field(mtp[1], 204, 12), 0.0002, 1e-4);
}

}  // namespace
}  // namespace gae
