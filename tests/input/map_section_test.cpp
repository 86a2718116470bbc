#include "input/map_section.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "vocabulary/fixed_format.h"
#include "frame/process_state.h"
#include "input/repeated_names.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;

class MapSectionTest : public testing::InTempDir {
 protected:
  bool Read(const std::string& text, int tool_code, int num_chs, int space_type, int space_unit) {
    testing::WriteText("map.txt", text);
    InputFile in;
    EXPECT_TRUE(in.Open("map.txt"));
    ::testing::internal::CaptureStdout();
    const bool ok = ReadMapSection(in, tool_code, num_chs, space_type, space_unit, map_);
    ::testing::internal::GetCapturedStdout();
    return ok;
  }
  MapSection map_;
};

TEST_F(MapSectionTest, IntervalsAddUpFromTheFirstMarkersOwnPositionAndMorganBecomesCentiMorgan) {
  const std::string text =
      "! chromosomes\n1A 3\n2B 1\n! map\n"
      "a 1A 0.05\nb 1 0.03\nc 1A 0.0\nd 2B 0.5\n";
  ASSERT_TRUE(Read(text, 106, 2, /*intervals*/ 1, /*Morgan*/ 2));
  ASSERT_EQ(map_.chromosomes.size(), 2u);
  // 0.05 M, then +0.03 M, then +0 M: 5, 8 and 8 cM; a lone marker at 0.5 M is at 50 cM.
  EXPECT_THAT(map_.chromosomes[0].positions, ElementsAre(5.0f, 8.0f, 8.0f));
  EXPECT_THAT(map_.chromosomes[1].positions, ElementsAre(50.0f));
  EXPECT_EQ(map_.total_markers, 4);
  EXPECT_EQ(map_.chromosome_names[0], fmt::PadRight("1A", 19));
  EXPECT_EQ(map_.chromosomes[0].marker_names[1], fmt::PadRight("b", 35));
}

TEST_F(MapSectionTest, NamesAreCutToTheirWidthsAndComparedExactly) {
  // Chromosome names of more than 19 characters are cut, and a marker row may name its
  // chromosome by the cut name; marker names differing only in case are two markers.
  const std::string long_name = "Chromosome_number_one_of_wheat";
  ASSERT_TRUE(Read(long_name + " 2\nXgwm(1)-3A " + long_name.substr(0, 19) +
                       " 1.0\nxgwm(1)-3A " + long_name + " 2.0\n",
                   107, 1, 2, 1));
  EXPECT_EQ(map_.chromosome_names[0], long_name.substr(0, 19));
}

TEST_F(MapSectionTest, TheConsensusToolAcceptsSharedNamesAndCountsDistinctMarkers) {
  const std::string text =
      "A 3\nB 3\nC 2\n"
      "m1 A 0\nm2 A 1\nm3 A 2\n"
      "m3 B 0\nm4 B 1\nm1 B 2\n"
      "m1 C 0\nm4 C 1\n";
  ASSERT_TRUE(Read(text, 105, 3, 2, 1));
  EXPECT_EQ(map_.total_markers, 8);
  const DistinctMarkers& d = map_.distinct;
  ASSERT_EQ(d.Count(), 4);
  EXPECT_EQ(d.names[3], fmt::PadRight("m4", 35));
  // Places by hand: m1 is 1st on A, 3rd on B, 1st on C; m2 only on A; ...
  std::vector<int32_t> places(4 * 3, -1);
  d.FillPlaces(4, 3, places.data());
  EXPECT_THAT(places, ElementsAre(1, 2, 3, 0,    // map A: m1 m2 m3 m4
                                  3, 0, 1, 2,    // map B
                                  1, 0, 0, 2));  // map C
  // The same file read by any other tool has a repeated name.
  EXPECT_FALSE(Read(text, 106, 3, 2, 1));
  EXPECT_EQ(MessageCode(), 2108);
}

TEST(ChromosomeOfMarkerTest, WalksTheRunningTotal) {
  std::vector<ChromosomeRecord> records(3);
  records[0].marker_names.resize(2);
  records[1].marker_names.resize(3);
  records[2].marker_names.resize(1);
  const int32_t expected[] = {0, 1, 1, 2, 2, 2, 3, 0};
  for (int k = 0; k <= 7; ++k) EXPECT_EQ(ChromosomeOfMarker(k, records), expected[k]) << k;
}

// The pairwise scan the hash table stands for: each name against every earlier one, in order.
std::optional<RepeatedName> LiteralScan(const std::vector<std::string_view>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (names[i] == names[j]) return RepeatedName{i, j};
    }
  }
  return std::nullopt;
}

TEST(RepeatedNamesTest, FindsThePairTheLiteralScanFinds) {
  std::mt19937 rng(7);
  const std::string pool[] = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"};
  for (int trial = 0; trial < 500; ++trial) {
    std::vector<std::string_view> names(rng() % 12);
    for (auto& n : names) n = pool[rng() % 12];
    const auto fast = FirstRepeatedName(names);
    const auto slow = LiteralScan(names);
    ASSERT_EQ(fast.has_value(), slow.has_value());
    if (fast) {
      EXPECT_EQ(fast->later, slow->later);
      EXPECT_EQ(fast->earlier, slow->earlier);
    }
  }
}

}  // namespace
}  // namespace gae
