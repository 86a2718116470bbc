// The pure-line tool through its C exports: whole runs of each population type on bred lines,
// the check's counts against the letters bred, the written input files read back, and every
// code of the pure-line reader. The frame that PLM shares with the other map tools is checked in
// map_tool_frame_test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "vocabulary/pair_index.h"
#include "gaengine.h"
#include "report/pure_line_segregation.h"
#include "support/bred_data_sets.h"
#include "support/export_call.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::ReadLines;
using testing::ReadText;
using testing::WriteText;
using testing::CheckPlm;
using testing::PlmCheck;

using PlmRun = testing::InTempDir;

TEST_F(PlmRun, AWholeRunOfEachTypeFindsTheBredChromosomesAndWritesEveryFile) {
  for (int type = 1; type <= 4; ++type) {
    SCOPED_TRACE(type);
    const std::vector<int32_t> patterns = type <= 2 ? std::vector<int32_t>{1234, 1214, 1233}
                                                    : std::vector<int32_t>{12345678, 12341234, 12345577};
    const testing::PureLineData data = testing::SimulatePureLineData(
        type, 2, 8, 8.0, type <= 2 ? 120 : 200, patterns, 0.02, 40 + type);
    const std::string stem = std::string("t") + std::to_string(type);
    WriteText(stem + ".plm", testing::PlmInputFile(data));

    // The check counts each marker's letters as the file holds them and tests their shares;
    // the names come back marker-fastest.
    const int founders = type <= 2 ? 4 : 8, n = 16, lines = static_cast<int>(data.letters[0].size());
    const PlmCheck c = CheckPlm(stem + ".plm");
    ASSERT_EQ(c.status, 0);
    EXPECT_EQ(c.category, std::vector<int>(data.patterns.begin(), data.patterns.end()));
    for (int m = 0; m < n; ++m) {
      const std::string& letters = data.letters[m];
      for (int k = 0; k < 9; ++k) EXPECT_EQ(c.sizes[k][m], std::count(letters.begin(), letters.end(), "ABCDEFGHX"[k]));
      const PureLineSegregation t = PureLineSegregationChiSquare(founders, data.patterns[m], letters.data(), lines);
      EXPECT_EQ(c.chi[m], t.chi_square);
      EXPECT_EQ(c.p[m], t.probability);
      EXPECT_EQ(c.anchor[m], 0);
      std::string name;
      for (int j = 0; j < 7; ++j) name += static_cast<char>(c.names[j * n + m]);
      EXPECT_EQ(name, data.names[m]);
    }
    EXPECT_EQ(ReadText(stem + ".LRD").size(), 8u * PairCount(n));

    ASSERT_EQ(testing::CallOnPath(PLMAllByDefault, stem + ".plm"), 0);
    EXPECT_EQ(ReadLines("PLM.log").back(), "DLL PLMAllByDefault run successfully!");
    for (const char* suffix : {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".plq", ".err", "EC.plm"})
      EXPECT_TRUE(testing::FileExists(stem + suffix)) << suffix;

    // Two groups, each of the eight markers of one bred chromosome.
    std::map<int, std::set<std::string>> chromosomes_in;
    for (const auto& [group, name] : testing::SumMapRows(stem + ".sum")) chromosomes_in[group].insert(name.substr(0, 3));
    ASSERT_EQ(chromosomes_in.size(), 2u);
    for (const auto& [group, chromosomes] : chromosomes_in) EXPECT_EQ(chromosomes.size(), 1u) << group;
    EXPECT_EQ(testing::SumMapRows(stem + ".sum").size(), 16u);

    // The corrected data set starts a new run, and the QTL file passes its validator.
    const PlmCheck again = CheckPlm(stem + "EC.plm");
    ASSERT_EQ(again.status, 0);
    for (int anchor : again.anchor) EXPECT_TRUE(anchor == 1 || anchor == 2) << anchor;
    EXPECT_EQ(testing::CallOnPath(CheckErrorPLQ, stem + ".plq"), 0);
    // The QTL file holds the letters as bred; the scan's flags go to EC.plm only.
    const auto qtl = testing::MarkerRowCells(stem + ".plq", lines);
    ASSERT_EQ(qtl.size(), 16u);
    for (int m = 0; m < n; ++m) {
      const auto row = qtl.find(data.names[m]);
      ASSERT_NE(row, qtl.end()) << data.names[m];
      std::string letters;
      for (const std::string& cell : row->second) letters += cell;
      EXPECT_EQ(letters, data.letters[m]) << data.names[m];
    }
  }
}

}  // namespace
}  // namespace gae
