#include "twopoint/pair_store_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "vocabulary/pair_index.h"
#include "support/temp_dir.h"
#include "twopoint/genotype_planes.h"

namespace gae {
namespace {

class PairStoreWriting : public testing::InTempDir {};

TEST(PairStoreNames, StemLosesItsLastFourCharacters) {
  EXPECT_EQ(PairStoreName("data/f2.map"), "data/f2.LRD");
  EXPECT_EQ(PairStoreName("f2.mapx"), "f2..LRD");
  EXPECT_EQ(PairStoreName(".map"), ".LRD");
  EXPECT_EQ(PairStoreName("ab"), ".LRD");
}

TEST(PairStoreRecords, RecordNumbersMapBackToTheirPairs) {
  for (int64_t i = 2; i <= 300; ++i) {
    for (int64_t j = 1; j < i; ++j) {
      int64_t a = 0, b = 0;
      PairOfRecord(GroupPairIndex(i, j), a, b);
      ASSERT_EQ(a, i);
      ASSERT_EQ(b, j);
    }
  }
  int64_t a = 0, b = 0;
  PairOfRecord(PairCount(65536), a, b);  // the last record of a very large project
  EXPECT_EQ(a, 65536);
  EXPECT_EQ(b, 65535);
}

TEST(GenotypePlaneCounts, EqualTheLiteralCountOverIndividuals) {
  std::mt19937 rng(3);
  const char letters[] = {'A', 'H', 'B', 'D', 'R', 'X', '?'};
  for (int n : {1, 63, 64, 65, 300}) {
    const int m = 6;
    std::vector<char> types(static_cast<size_t>(n) * m);
    for (char& c : types) c = letters[rng() % 7];
    const GenotypePlanes planes(types.data(), m, n);
    auto row = [](char c) { return c == 'A' ? 0 : (c == 'H' || c == 'D' || c == 'R') ? 1 : c == 'B' ? 2 : -1; };
    for (int i = 1; i <= m; ++i) {
      for (int j = 1; j <= m; ++j) {
        float expected[9] = {};
        for (int k = 0; k < n; ++k) {
          const int r = row(types[(i - 1) * n + k]), c = row(types[(j - 1) * n + k]);
          if (r >= 0 && c >= 0) expected[3 * r + c] += 1.0f;
        }
        float cells[9];
        planes.Count(i, j, cells);
        for (int c = 0; c < 9; ++c) ASSERT_EQ(cells[c], expected[c]) << n << " " << i << " " << j;
      }
    }
  }
}

TEST_F(PairStoreWriting, BlocksOnAnyNumberOfThreadsGiveTheSameBytesInRecordOrder) {
  auto run = [](int threads, int64_t block) {
    PairStoreJob job;
    job.lrd_name = "t.LRD";
    job.num_markers = 57;
    job.threads = threads;
    job.block_records = block;
    // Every fifth pair has no estimate, as a degenerate table gives: NaN frequency, LOD 149.
    auto broken = [](int64_t i, int64_t j) { return (i + j) % 5 == 0; };
    job.estimate = [&](int64_t i, int64_t j, float* record) {
      record[0] = broken(i, j) ? -149.0f : static_cast<float>(i);
      record[1] = broken(i, j) ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(j);
    };
    std::vector<int64_t> seen;
    int64_t expected = 0;
    job.inspect = [&](int64_t i, int64_t j, const float*) {
      seen.push_back(GroupPairIndex(i, j));
      expected += broken(i, j);
    };
    int64_t not_a_number = -1;
    EXPECT_TRUE(WritePairStore(job, &not_a_number));
    // The pairs of every block and thread are added up.
    EXPECT_EQ(not_a_number, expected);
    EXPECT_GT(expected, 0);
    for (size_t k = 0; k < seen.size(); ++k) EXPECT_EQ(seen[k], static_cast<int64_t>(k + 1));
    return testing::ReadText("t.LRD");
  };
  const std::string one = run(1, 1 << 18);
  ASSERT_EQ(one.size(), 8u * PairCount(57));
  for (int64_t k = 1; k <= PairCount(57); ++k) {
    float record[2];
    std::memcpy(record, one.data() + (k - 1) * 8, 8);
    int64_t i = 0, j = 0;
    PairOfRecord(k, i, j);
    // A pair without an estimate is stored as unlinked: minus LOD 0, frequency 0.5.
    ASSERT_EQ(record[0], (i + j) % 5 == 0 ? 0.0f : static_cast<float>(i));
    ASSERT_EQ(record[1], (i + j) % 5 == 0 ? 0.5f : static_cast<float>(j));
  }
  EXPECT_EQ(run(4, 7), one);
  EXPECT_EQ(run(3, 1000), one);
}

TEST_F(PairStoreWriting, OnlyAFileOfExactlyAllRecordsIsComplete) {
  EXPECT_FALSE(PairStoreIsComplete("none.LRD", 4, 2));
  testing::WriteText("a.LRD", std::string(6 * 8, 'x'));
  EXPECT_TRUE(PairStoreIsComplete("a.LRD", 4, 2));
  EXPECT_FALSE(PairStoreIsComplete("a.LRD", 5, 2));
  EXPECT_FALSE(PairStoreIsComplete("a.LRD", 3, 2));
  EXPECT_FALSE(PairStoreIsComplete("a.LRD", 4, 7));
  testing::WriteText("b.LRD", std::string(6 * 8 + 3, 'x'));  // a broken last record: not a store
  EXPECT_FALSE(PairStoreIsComplete("b.LRD", 4, 2));
  // The pairs of 37 markers in 8-byte records are 5,328 bytes: 190 records of 28 bytes and 8
  // left over, yet no store of 20 clonal markers.
  testing::WriteText("d.LRD", std::string(666 * 8, 'x'));
  EXPECT_TRUE(PairStoreIsComplete("d.LRD", 37, 2));
  EXPECT_FALSE(PairStoreIsComplete("d.LRD", 20, 7));
  testing::WriteText("c.LRD", "");
  EXPECT_FALSE(PairStoreIsComplete("c.LRD", 1, 2));  // one marker: record 0 does not exist
}

}  // namespace
}  // namespace gae
