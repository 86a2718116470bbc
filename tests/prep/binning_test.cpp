// Marker binning against hand-made groups and a literal check of its promise.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "input/list_reader.h"
#include "prep/bin_parameters.h"
#include "prep/binning.h"
#include "support/temp_dir.h"
#include "prep/distortion.h"

namespace gae {
namespace {

struct Markers {
  std::vector<std::string> rows;
  std::vector<int32_t> classes;
  std::string flat;
  BinningData Data() {
    flat.clear();
    for (const auto& r : rows) flat += r;
    if (classes.empty()) classes.assign(rows.size(), 1);
    return {static_cast<int32_t>(rows.size()), static_cast<int32_t>(rows.front().size()), flat.data(), classes};
  }
};

bool AgreeWhereTyped(const std::string& a, const std::string& b) {
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i] != 'X' && b[i] != 'X' && a[i] != b[i]) return false;
  return true;
}

TEST(Binning, KnownGroupsRepresentativesAndConsensus) {
  Markers m;
  m.rows = {"AHBXAHBA",   // 0: group 1, one missing
            "AHBBXXBA",   // 1: group 1, two missing
            "AHBBAHBA",   // 2: group 1, complete: the representative of method 1
            "BBAAHHAB",   // 3: group 2
            "XBAAHHXB",   // 4: group 2
            "BBAAHHAH",   // 5: differs from 3 on the last line
            "BBAAHHAB"};  // 6: identical to 3, other category
  m.classes = {1, 1, 1, 1, 1, 1, 12};
  const BinningData data = m.Data();
  const std::vector<float> p(7, 1.0f);
  BinningOptions options;
  BinningResult r = BinMarkers(data, p, options);
  ASSERT_EQ(r.bins.size(), 4u);
  EXPECT_EQ(r.bins[0].members, (std::vector<int32_t>{2, 0, 1}));
  EXPECT_EQ(r.bins[0].letters, "AHBBAHBA");
  EXPECT_EQ(r.bins[1].members, (std::vector<int32_t>{3, 4}));
  EXPECT_EQ(r.bins[2].members, std::vector<int32_t>{5});
  EXPECT_EQ(r.bins[3].members, std::vector<int32_t>{6});

  // Without the complete marker, the consensus of 0 and 1 fills each one's gaps.
  m.rows = {"AHBXAHBA", "AHBBXXBA", "BBAAHHAB"};
  m.classes.clear();
  options.method = 2;
  r = BinMarkers(m.Data(), std::vector<float>(3, 1.0f), options);
  ASSERT_EQ(r.bins.size(), 2u);
  EXPECT_EQ(r.bins[0].members, (std::vector<int32_t>{0, 1}));
  EXPECT_EQ(r.bins[0].letters, "AHBBAHBA");
  // A missing value that agrees with nothing leaves only identical markers together.
  options.missing_agrees = false;
  EXPECT_EQ(BinMarkers(m.Data(), std::vector<float>(3, 1.0f), options).bins.size(), 3u);

  // Filters: a missing rate above the threshold, a p-value below the threshold.
  options = BinningOptions{};
  options.max_missing_rate = 0.2f;
  options.min_distortion_p = 0.05f;
  r = BinMarkers(m.Data(), std::vector<float>{1.0f, 1.0f, 0.01f}, options);
  EXPECT_EQ(r.dropped_missing, std::vector<int32_t>{1});
  EXPECT_EQ(r.dropped_distortion, std::vector<int32_t>{2});
  ASSERT_EQ(r.bins.size(), 1u);
}

TEST(Binning, PlantedDuplicatesShareABinAndEveryBinAgreesInside) {
  std::mt19937 rng(11);
  const int lines = 130, families = 60;
  Markers m;
  std::vector<int> family;
  for (int f = 0; f < families; ++f) {
    std::string base(lines, 'A');
    for (char& c : base) c = "AHB"[rng() % 3];
    const int copies = 1 + static_cast<int>(rng() % 4);
    for (int k = 0; k < copies; ++k) {
      std::string row = base;
      for (char& c : row)
        if (rng() % 20 == 0) c = 'X';
      m.rows.push_back(row);
      family.push_back(f);
    }
  }
  std::shuffle(m.rows.begin(), m.rows.end(), std::mt19937(5));
  std::shuffle(family.begin(), family.end(), std::mt19937(5));
  const BinningResult r = BinMarkers(m.Data(), std::vector<float>(m.rows.size(), 1.0f), BinningOptions{});
  ASSERT_EQ(r.bins.size(), static_cast<std::size_t>(families));
  std::vector<int> seen(m.rows.size(), 0);
  for (const MarkerBin& bin : r.bins) {
    for (int32_t a : bin.members) {
      ++seen[a];
      EXPECT_EQ(family[a], family[bin.members.front()]);
      for (int32_t b : bin.members) EXPECT_TRUE(AgreeWhereTyped(m.rows[a], m.rows[b]));
      const auto missing = [&](int32_t k) { return std::count(m.rows[k].begin(), m.rows[k].end(), 'X'); };
      EXPECT_LE(missing(bin.members.front()), missing(a));
    }
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), static_cast<long>(m.rows.size()));
}

TEST(Binning, SegregationPValuesOfTheThreeDesigns) {
  // F2 1:2:1 exactly met; a clonal ABCD marker all of one class; founders ABAB in 1:1.
  const std::string f2 = "AHHB", clonal = "AAAAAAAA", founders = "ABAB";
  EXPECT_NEAR(SegregationPValues(2, 7, std::vector<int32_t>{1}, f2.data(), 4)[0], 1.0f, 1e-4f);
  EXPECT_LT(SegregationPValues(20, 1, std::vector<int32_t>{1}, clonal.data(), 8)[0], 0.01f);
  EXPECT_NEAR(SegregationPValues(30, 2, std::vector<int32_t>{1212}, founders.data(), 4)[0], 1.0f, 1e-4f);
}

class BinParameterSection : public testing::InTempDir {};

TEST_F(BinParameterSection, ReadAbsentOrRefusedWithItsCode) {
  const std::pair<std::string, int> cases[] = {
      {"! remarks only\n", 0},          {"0.05\n0.01\n1\n0\n2\n", 0},
      {"abc\n", 3141},                  {"0.10\n", 3142},
      {"0.05\nx\n", 3143},             {"0.05\n0.0\n", 3144},
      {"0.05\n0.01\n?\n", 3145},      {"0.05\n0.01\n1\n?\n", 3146},
      {"0.05\n0.01\n1\n1\n?\n", 3147}, {"0.05\n0.01\n1\n1\n3\n", 3148}};
  for (const auto& [text, code] : cases) {
    testing::WriteText("p.txt", text);
    InputFile in;
    ASSERT_TRUE(in.Open("p.txt"));
    BinParameters p;
    ::testing::internal::CaptureStdout();
    const BinParameterRead read = ReadBinParameters(in, p);
    const std::string out = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(MessageCode(), code) << text;
    if (code != 0) {
      EXPECT_EQ(out.rfind("--Error" + std::to_string(code) + ": ", 0), 0u) << out;
    }
    if (text[0] == '0') {
      EXPECT_EQ(read, code == 0 ? BinParameterRead::kRead : BinParameterRead::kFailed);
    }
  }
  testing::WriteText("p.txt", "0.05\n0.01\n1\n0\n2\n");
  InputFile in;
  ASSERT_TRUE(in.Open("p.txt"));
  BinParameters p;
  ASSERT_EQ(ReadBinParameters(in, p), BinParameterRead::kRead);
  EXPECT_EQ(p.use_anchors, 1);
  EXPECT_EQ(p.missing_agrees, 0);
  EXPECT_EQ(p.method, 2);
}

}  // namespace
}  // namespace gae
