#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "input/map_section.h"
#include "support/temp_dir.h"
#include "twopoint/cmp_pairwise_file.h"
#include "twopoint/consensus_distances.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using ::testing::FloatEq;
using ::testing::HasSubstr;
using ::testing::Not;

ChromosomeRecord Map(std::vector<std::string> names, std::vector<float> positions) {
  ChromosomeRecord record;
  record.marker_names = std::move(names);
  record.positions = std::move(positions);
  return record;
}

TEST(ConsensusDistancesTest, MeansOverTheMapsHoldingBothMarkersByHand) {
  // m2 stands on A only, m4 on B and C; m1 on all three. First appearance numbers them
  // m1, m2, m3, m4. m1 stands twice on C: its first place (2 cM) counts.
  const std::vector<ChromosomeRecord> maps = {
      Map({"m1", "m2", "m3"}, {0, 10, 25}),
      Map({"m3", "m4", "m1"}, {0, 5, 30}),
      Map({"m1", "m4", "m1"}, {2, 12, 40}),
  };
  const DistinctMarkers table = BuildDistinctMarkers(maps);
  ASSERT_EQ(table.Count(), 4);
  // (2,1): A 10.  (3,1): A 25, B 30.  (3,2): A 15.  (4,1): B 25, C 10.  (4,2): none.  (4,3): B 5.
  EXPECT_THAT(ConsensusMeanDistances(maps, table),
              ElementsAre(FloatEq(10), FloatEq(27.5f), FloatEq(15), FloatEq(17.5f), FloatEq(1000),
                          FloatEq(5)));
  float record[2];
  ConsensusPairRecord(17.5f, record);  // Morgan: a distance over 100
  EXPECT_THAT(record, ElementsAre(FloatEq(17.5f), FloatEq(0.175f)));
  ConsensusPairRecord(1000.0f, record);  // unlinked
  EXPECT_THAT(record, ElementsAre(FloatEq(1000), FloatEq(0.5f)));
  ConsensusPairRecord(72.0f, record);  // Morgan's frequency stops at one half
  EXPECT_THAT(record, ElementsAre(FloatEq(72), FloatEq(0.5f)));
}

class ConsensusPairFileTest : public testing::InTempDir {
 protected:
  // The same three maps (positions in steps of 6.25 cM) written in one of the four forms of a
  // section; the values are exact in binary, so every form must give the same bits.
  static std::string Section(int space_type, int space_unit) {
    const std::vector<std::vector<std::pair<std::string, float>>> maps = {
        {{"a", 0}, {"b", 12.5f}, {"c", 25}, {"d", 37.5f}},
        {{"b", 6.25f}, {"c", 18.75f}, {"e", 31.25f}},
        {{"a", 6.25f}, {"c", 25}, {"e", 37.5f}, {"f", 43.75f}}};
    std::string text = "M1 4\nM2 3\nM3 4\n! rows\n";
    for (std::size_t c = 0; c < maps.size(); ++c) {
      float before = 0;
      for (const auto& [name, cm] : maps[c]) {
        float value = space_type == 1 ? cm - before : cm;
        before = cm;
        if (space_unit == 2) value /= 100.0f;
        char row[80];
        std::snprintf(row, sizeof row, "%s M%zu %.6f\n", name.c_str(), c + 1, value);
        text += row;
      }
    }
    return text;
  }

  std::string PairFileOf(const std::string& project, int space_type, int space_unit) {
    testing::WriteText(project, Section(space_type, space_unit));
    InputFile in;
    EXPECT_TRUE(in.Open(project));
    MapSection section;
    EXPECT_TRUE(ReadMapSection(in, 105, 3, space_type, space_unit, section));
    const std::string lrd_name = project.substr(0, project.size() - 4) + ".LRD";
    EXPECT_TRUE(CMPPairwiseFile(lrd_name, section.chromosomes, section.distinct));
    std::ifstream lrd(lrd_name, std::ios::binary);
    return {std::istreambuf_iterator<char>(lrd), {}};
  }
};

TEST_F(ConsensusPairFileTest, IntervalsAndMorganGiveThePairFileOfPositionsInCentiMorgan) {
  ::testing::internal::CaptureStdout();
  const std::string reference = PairFileOf("cm.cmp", 2, 1);
  const std::string said = ::testing::internal::GetCapturedStdout();
  ASSERT_EQ(reference.size(), 15u * 8u);  // six markers, 15 pairs of two words
  EXPECT_EQ(PairFileOf("intervals.cmp", 1, 1), reference);
  EXPECT_EQ(PairFileOf("morgan.cmp", 2, 2), reference);
  EXPECT_EQ(PairFileOf("both.cmp", 1, 2), reference);

  // d (only on M1) and f (only on M3) share no map: record (1000, 0.5) at K = 14.
  float apart[2];
  std::copy_n(reference.data() + 13 * 8, 8, reinterpret_cast<char*>(apart));
  EXPECT_THAT(apart, ElementsAre(1000.0f, 0.5f));
  EXPECT_THAT(said, HasSubstr("Re-calculate pair-wise marker distance (cM) ..."));
  EXPECT_THAT(said, HasSubstr("Calculating marker distance was complted!"));
  EXPECT_THAT(said, Not(HasSubstr("Calculating pair-wise recombination frequency")));
}

}  // namespace
}  // namespace gae
