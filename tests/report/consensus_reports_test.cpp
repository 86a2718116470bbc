#include "report/consensus_reports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vocabulary/pair_index.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;

std::string Right(const std::string& s, int width) {
  return std::string(width - static_cast<int>(s.size()), ' ') + s;
}

TEST(ConsensusReportsTest, SumShowsEachMarkersMapsAndDisTheMorganDistances) {
  // Two input maps: P holds x, y, z; Q holds z, w, x. The consensus has x, z, w on one
  // chromosome at 0, 4 and 10 cM; y is unlinked.
  std::vector<ChromosomeRecord> maps(2);
  maps[0].marker_names = {"x", "y", "z"};
  maps[1].marker_names = {"z", "w", "x"};
  const DistinctMarkers table = BuildDistinctMarkers(maps);  // x 1, y 2, z 3, w 4
  FinishedMapLayout map;
  map.mapping_function = 3;
  map.marker_names = table.names;
  map.num_markers = 4;
  map.num_mapped = 3;
  map.num_unlinked = 1;
  map.chromosome_names = {"Chromsome1"};
  map.chromosome_sizes = {3};
  map.order = {1, 3, 4, 2};
  map.position = {0.0f, 4.0f, 10.0f};

  const std::vector<std::string> sum = testing::SplitLines(ConsensusSumReport(map, table, 2));
  ASSERT_GE(sum.size(), 5u);
  EXPECT_EQ(sum[0], Right("ChromsomeID", 20) + Right("ChromosomeName", 20) + Right("MarkerName", 20) +
                        Right("Interval(cM)", 20) + Right("Position(cM)", 20) +
                        Right("NumMaps", 20) + Right("1", 20) + Right("2", 20));
  // Marker z: on both maps, third on P and first on Q.
  EXPECT_EQ(sum[2], Right("1", 20) + Right("Chromsome1", 20) + " " + Right("z", 19) +
                        Right("4.0000", 20) + Right("4.0000", 20) + Right("2", 20) +
                        Right("3", 20) + Right("1", 20));
  // Marker w: only on Q, as its second marker.
  EXPECT_EQ(sum[3].substr(60, 20), Right("6.0000", 20));
  EXPECT_EQ(sum[3].substr(100), Right("1", 20) + Right("0", 20) + Right("2", 20));
  EXPECT_EQ(sum[4], "");
  EXPECT_EQ(sum[5].substr(0, 40), Right("ChromosomeID", 20) + Right("ChromosomeName", 20));

  // Stored frequencies are Morgan's: 0.04 comes back as 4 cM; 0.5 is unlinked.
  std::vector<float> words(2 * PairCount(4), 0.5f);
  words[2 * (GroupPairIndex(3, 1) - 1) + 1] = 0.04f;
  words[2 * (GroupPairIndex(4, 3) - 1) + 1] = 0.06f;
  const PairTable pairs{words.data(), PairCount(4), 2, 3};
  const std::vector<std::string> dis = testing::SplitLines(ConsensusDisReport(map, pairs));
  EXPECT_THAT(dis, ElementsAre(Right("NewMarkerID", 12) + Right("MarkerName", 20) + Right("1", 12) +
                                   Right("2", 12) + Right("3", 12),
                               Right("1", 12) + " " + Right("x", 19),
                               Right("2", 12) + " " + Right("z", 19) + Right("4.0000", 12),
                               Right("3", 12) + " " + Right("w", 19) + Right("1000.0000", 12) +
                                   Right("6.0000", 12)));
}

}  // namespace
}  // namespace gae
