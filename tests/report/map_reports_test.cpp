// The reports of a finished map: the summary and matrices, the consensus's, and the files
// written for the next tools, read back with the list-directed reader in the order the tools read
// them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "report/consensus_reports.h"
#include "report/downstream_files.h"
#include "report/map_reports.h"
#include "report/remark_blocks.h"
#include "support/pair_store.h"
#include "support/temp_dir.h"
#include "vocabulary/fixed_format.h"
#include "vocabulary/pair_index.h"

namespace gae {
namespace {

using ::testing::ElementsAre;

std::string Blanks(int n) { return std::string(n, ' '); }
double Field(const std::string& line, int start, int width) { return std::stod(line.substr(start, width)); }

using Store = testing::MemoryStore;

// Seven markers of an F2: chromosome "Chr1" holds 3, 1, 5; "Chr2" is empty; "Chr3" holds 7;
// markers 2 and 4 are unlinked and 6 is deleted.
MapLayout SmallMap() {
  MapLayout map;
  map.population_type = 7;
  map.mapping_function = 1;
  map.num_individuals = 4;
  for (const char* name : {"ABCDEFGHIJKLMNOPQRSTUVWXYZ", "M2", "M3", "M4", "M5", "M6", "M7"})
    map.marker_names.push_back(fmt::PadRight(name, 35));
  map.marker_class = {1, 1, 12, 1, 10, 1, 1};
  map.types = {'A', 'H', 'H', 'B',  'A', 'A', 'A', 'A',  'D', 'D', 'B', 'X',  'A', 'H', 'B', 'X',
               'A', 'R', 'R', 'R',  'H', 'H', 'H', 'H',  'A', 'H', 'H', 'B'};
  map.num_markers = 7;
  map.num_mapped = 4;
  map.num_unlinked = 2;
  map.anchor = {0, 0, 2, 0, 0, 0, 9};
  map.chromosome_names = {fmt::PadRight("Chr1", 19), fmt::PadRight("Chr2", 19), fmt::PadRight("Chr3", 19)};
  map.chromosome_sizes = {3, 0, 1};
  map.order = {3, 1, 5, 7, 2, 4, 6};
  map.position = {0.0f, 10.5f, 25.25f, 1e17f};
  return map;
}

Store SmallStore() {
  Store s(7);
  s.Set(1, 3, 8.0f, 0.1f);
  s.Set(5, 1, 6.0f, 0.2f);
  s.Set(3, 5, 5.0f, 0.25f);
  return s;
}

TEST(MapReports, SumRowsCarryIntervalsFrequenciesAndInterference) {
  const MapLayout map = SmallMap();
  const Store store = SmallStore();
  const std::vector<std::string> lines = testing::SplitLines(SumReport(map, store.Table(1)));
  ASSERT_EQ(lines.size(), 1u + 4 + 1 + 1 + 3 + 1 + 1 + 1 + 2 + 1 + 1 + 1);
  EXPECT_EQ(lines[0], Blanks(9) + "ChromsomeID" + Blanks(6) + "ChromosomeName" + Blanks(10) + "MarkerName" +
                          Blanks(8) + "Interval(cM)" + Blanks(8) + "Position(cM)" + Blanks(6) +
                          "RecomFrequency" + Blanks(8) + "Interference");
  // The first marker of a chromosome: no interval, frequency one half, no interference.
  EXPECT_EQ(lines[1], Blanks(19) + "1" + Blanks(16) + "Chr1" + " " + Blanks(17) + "M3" + Blanks(14) +
                          "0.0000" + Blanks(14) + "0.0000" + Blanks(14) + "0.5000" + Blanks(14) + "0.0000");
  // A name longer than 19 characters keeps its first 19 here.
  EXPECT_EQ(lines[2].substr(41, 19), "ABCDEFGHIJKLMNOPQRS");
  EXPECT_NEAR(Field(lines[2], 60, 20), 10.5, 1e-9);
  EXPECT_NEAR(Field(lines[2], 100, 20), 0.1, 1e-9);
  // Between markers 3 and 5: 1 - (0.1 + 0.2 - 0.25) / (2 x 0.1 x 0.2) = -0.25.
  EXPECT_NEAR(Field(lines[2], 120, 20), -0.25, 1e-4);
  EXPECT_NEAR(Field(lines[3], 60, 20), 14.75, 1e-9);
  EXPECT_NEAR(Field(lines[3], 100, 20), 0.2, 1e-9);
  EXPECT_NEAR(Field(lines[3], 120, 20), 0.0, 1e-9);  // the last marker
  // A one-marker chromosome, and a position too wide for its field.
  EXPECT_EQ(lines[4].substr(0, 20), Blanks(19) + "3");
  EXPECT_EQ(lines[4].substr(80, 20), std::string(20, '*'));
  EXPECT_EQ(lines[5], "");
  // The chromosome table lists the empty chromosome too; lengths ignore the gaps between them.
  EXPECT_EQ(lines[7], Blanks(19) + "1" + " " + Blanks(15) + "Chr1" + Blanks(19) + "3" + Blanks(13) + "25.2500");
  EXPECT_EQ(lines[8].substr(40, 40), Blanks(19) + "0" + Blanks(14) + "0.0000");
  EXPECT_EQ(lines[9].substr(40, 40), Blanks(19) + "1" + Blanks(14) + "0.0000");
  EXPECT_EQ(lines[10], Blanks(9) + "WholeGenome" + Blanks(9) + "WholeGenome" + Blanks(19) + "4" + Blanks(13) + "25.2500");
  EXPECT_EQ(lines[12], Blanks(4) + "UnlinkedMarkerID" + Blanks(10) + "MarkerName");
  EXPECT_EQ(lines[13], Blanks(19) + "2" + " " + Blanks(17) + "M2");
  EXPECT_EQ(lines[14], Blanks(19) + "4" + " " + Blanks(17) + "M4");
  EXPECT_EQ(lines[16], Blanks(5) + "DeletedMarkerID" + Blanks(10) + "MarkerName");
  EXPECT_EQ(lines[17], Blanks(19) + "6" + " " + Blanks(17) + "M6");
}

TEST(MapReports, AChromosomeOfTwoMarkersHasNoInterference) {
  MapLayout map = SmallMap();
  map.chromosome_sizes = {2, 2, 0};
  map.position = {0.0f, 10.5f, 0.0f, 7.0f};
  const std::vector<std::string> lines = testing::SplitLines(SumReport(map, SmallStore().Table(1)));
  for (int row = 1; row <= 4; ++row) EXPECT_NEAR(Field(lines[row], 120, 20), 0.0, 1e-9) << row;
  EXPECT_NEAR(Field(lines[2], 100, 20), 0.1, 1e-9);
  EXPECT_NEAR(Field(lines[8], 60, 20), 7.0, 1e-9);  // the second chromosome's length
}

TEST(MapReports, InterferenceVanishesAtTheLimitAndCanBeNegative) {
  EXPECT_EQ(Interference(0.000001f, 1.0f, 0.3f), 0.0f);  // r1 r2 exactly at the limit
  // Just above the limit it is computed (in single precision, hence the loose bound).
  EXPECT_NEAR(Interference(0.000002f, 1.0f, 1.0f), 1.0 - 0.000002 / 0.000004, 0.01);
  EXPECT_NEAR(Interference(0.1f, 0.2f, 0.25f), -0.25, 1e-5);
  EXPECT_NEAR(Interference(0.1f, 0.1f, 0.18f), 0.0, 1e-5);  // no interference: r13 = r12 + r23 - 2 r12 r23
}

TEST(MapReports, MtpRowsCountGenotypesAndKeepTheLaggingChromosomeNumber) {
  const MapLayout map = SmallMap();
  const std::vector<std::string> lines = testing::SplitLines(MtpReport(map));
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0].substr(0, 60), Blanks(1) + "NewMarkerID" + Blanks(2) + "OriginalID" + " " + Blanks(25) + "MarkerName");
  EXPECT_EQ(lines[0].substr(60), Blanks(6) + "Anchor" + Blanks(3) + "Chromsome" + Blanks(4) + "Posotion" +
                                     Blanks(2) + "Size(2/12)" + Blanks(5) + "Size(1)" + Blanks(2) + "Size(0/10)" +
                                     Blanks(4) + "Size(-1)" + Blanks(2) + "Chi-Square" + Blanks(4) + "Pr>ChiSq" +
                                     Blanks(5) + "HetBand");
  // Marker 3 is dominant: D D B X gives 2 in the P1 class, 1 P2, 1 missing.
  EXPECT_EQ(lines[1].substr(0, 60), Blanks(11) + "1" + Blanks(11) + "3" + " " + Blanks(33) + "M3");
  EXPECT_EQ(lines[1].substr(60, 36), Blanks(11) + "2" + Blanks(11) + "1" + Blanks(6) + "0.0000");
  EXPECT_EQ(lines[1].substr(96, 48), Blanks(11) + "2" + Blanks(11) + "0" + Blanks(11) + "1" + Blanks(11) + "1");
  // 3:1 expected of 3 individuals: (2 - 2.25)^2 / 2.25 + (1 - 0.75)^2 / 0.75 = 1/9.
  EXPECT_NEAR(Field(lines[1], 144, 12), 1.0 / 9, 1e-4);
  EXPECT_NEAR(Field(lines[1], 156, 12), std::erfc(std::sqrt(1.0 / 18)), 1e-4);
  EXPECT_EQ(lines[1].substr(168), Blanks(4) + "Dominant");
  // The whole name, and the other marker classes.
  EXPECT_EQ(lines[2].substr(25, 35), Blanks(9) + "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  EXPECT_EQ(lines[2].substr(168), Blanks(2) + "Codominant");
  EXPECT_EQ(lines[3].substr(168), Blanks(3) + "Recessive");
  // After the empty second chromosome the counter lags: marker 7 lies on chromosome 3 but is
  // numbered 2. Its anchor prints, and its position overflows to asterisks.
  EXPECT_EQ(lines[4].substr(60, 24), Blanks(11) + "9" + Blanks(11) + "2");
  EXPECT_EQ(lines[4].substr(84, 12), std::string(12, '*'));
}

TEST(MapReports, NoHeterozygoteClassWordOutsideThePopulationsThatShowOne) {
  MapLayout map = SmallMap();
  map.population_type = 4;
  for (char& c : map.types)
    if (c != 'A' && c != 'B') c = 'X';
  const std::vector<std::string> lines = testing::SplitLines(MtpReport(map));
  for (size_t k = 1; k < lines.size(); ++k) EXPECT_EQ(lines[k].substr(168), Blanks(10) + "NA");
}

TEST(MapReports, MatricesHoldTheLowerTriangleOfTheFirstHundredMarkers) {
  MapLayout map;
  map.population_type = 7;
  map.mapping_function = 2;
  map.num_individuals = 1;
  map.num_markers = 150;
  map.num_mapped = 150;
  Store store(150);
  for (int m = 1; m <= 150; ++m) {
    std::string name = std::to_string(m);
    name.insert(name.begin(), 'K');
    map.marker_names.push_back(fmt::PadRight(name, 35));
    map.marker_class.push_back(1);
    map.types.push_back('A');
    map.anchor.push_back(m % 4);
    map.order.push_back(151 - m);
    map.position.push_back(static_cast<float>(m));
    for (int j = 1; j < m; ++j) store.Set(m, j, 0.5f * (m + j), j == 1 ? 0.5f : 0.001f * (m - j));
  }
  map.chromosome_names = {fmt::PadRight("Chromsome1", 19)};
  map.chromosome_sizes = {150};
  const PairTable table = store.Table(2);
  const std::vector<std::string> lod = testing::SplitLines(PairMatrixReport(map, table, PairMatrix::kLod));
  const std::vector<std::string> rec = testing::SplitLines(PairMatrixReport(map, table, PairMatrix::kRec));
  const std::vector<std::string> dis = testing::SplitLines(PairMatrixReport(map, table, PairMatrix::kDis));
  ASSERT_EQ(lod.size(), 101u);
  ASSERT_EQ(dis.size(), 101u);
  EXPECT_EQ(lod[0].size(), 60u + 12 * 100);
  EXPECT_EQ(lod[0].substr(0, 60), Blanks(1) + "NewMarkerID" + Blanks(26) + "MarkerName" + Blanks(6) + "Anchor");
  EXPECT_EQ(lod[0].substr(60 + 12 * 99), Blanks(9) + "100");
  EXPECT_EQ(lod[1], Blanks(11) + "1" + " " + Blanks(31) + "K150" + Blanks(11) + "2");  // no diagonal
  // Row 3 is marker 148 against markers 150 and 149.
  EXPECT_EQ(lod[3].size(), 60u + 24);
  EXPECT_NEAR(Field(lod[3], 60, 12), 0.5 * (150 + 148), 1e-4);
  EXPECT_NEAR(Field(rec[3], 72, 12), 0.001, 1e-6);
  EXPECT_NEAR(Field(dis[3], 72, 12), -50 * std::log(1 - 2 * 0.001), 1e-4);
  EXPECT_EQ(rec[100].size(), 60u + 12 * 99);
  // Marker 1 is never among the first hundred; a frequency of one half would read 1000.0000.
  MapLayout reversed = map;
  for (int m = 0; m < 150; ++m) reversed.order[m] = m + 1;
  const std::vector<std::string> d = testing::SplitLines(PairMatrixReport(reversed, table, PairMatrix::kDis));
  EXPECT_EQ(d[2].substr(60), Blanks(3) + "1000.0000");
}

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

using Rows = std::vector<std::vector<std::string>>;

class DownstreamFiles : public testing::InTempDir {
 protected:
  // Two chromosomes (the second one empty, the third with one marker), three linked markers.
  LinkedMapRecord Map(int32_t individuals) {
    LinkedMapRecord map;
    map.population_type = 7;
    map.mapping_function = 2;
    map.space_type = 1;
    map.num_individuals = individuals;
    map.chromosome_names = {"Chr1", "Chr2", "Chr3"};
    map.chromosome_sizes = {2, 0, 1};
    map.marker_names = {"mk_a", "mk_b", "mk_c"};
    map.positions = {0.0f, 12.5f, 3.25f};
    return map;
  }
  void Open(const std::string& text) {
    testing::WriteText("file.txt", text);
    ASSERT_TRUE(in_.Open("file.txt"));
  }
  // The next `count` header values, each a list-directed read after the remarks.
  std::vector<int32_t> Ints(int count) {
    std::vector<int32_t> values(count, -999);
    for (int32_t& v : values) {
      in_.SkipRemarks();
      ListRead read(in_);
      EXPECT_TRUE(read.Int(v));
    }
    return values;
  }
  // The next `rows` rows after the remarks: a name, then `tokens` items, each a list-directed read.
  Rows Block(std::size_t rows, std::size_t tokens) {
    in_.SkipRemarks();
    Rows block(rows);
    for (auto& items : block) {
      ListRead read(in_);
      for (std::size_t k = 0; k <= tokens; ++k) {
        std::string_view item;
        EXPECT_TRUE(read.Item(item));
        items.emplace_back(item);
      }
    }
    return block;
  }
  InputFile in_;
};

TEST_F(DownstreamFiles, CorrectedMapFileReadsBackAndDropsMonomorphicMarkers) {
  const LinkedMapRecord map = Map(3);
  const std::vector<uint8_t> lost{0, 1, 0};
  const std::string text = EcMapText(map, "AHX" "XXB" "DRB", lost);
  EXPECT_NE(text.find("\n         7  !Mapping Population (see remarks above)\n"), std::string::npos);
  Open(text);
  EXPECT_THAT(Ints(5), ElementsAre(7, 2, 1, 2, 3));  // the input's space type; two markers kept
  EXPECT_EQ(Block(2, 3), (Rows{{"mk_a", "A", "H", "X"}, {"mk_c", "D", "R", "B"}}));
  EXPECT_EQ(Block(2, 1), (Rows{{"mk_a", "1"}, {"mk_c", "3"}}));  // mk_c on its own chromosome
  std::string_view item;
  in_.SkipRemarks();
  EXPECT_FALSE(in_.NextItem(item));
  // With nothing kept the file still has both blocks and a count of 0.
  const std::string empty = EcMapText(map, "AHX" "XXB" "DRB", std::vector<uint8_t>{1, 1, 1});
  EXPECT_NE(empty.find("         0  !Number of Markers\n"), std::string::npos);
  EXPECT_NE(empty.find(BlockText(BiparentalMarkerTypeBlock()) + "\n" + BlockText(AnchorBlock()) + "\n"),
            std::string::npos);
}

TEST_F(DownstreamFiles, LargePopulationsWrapAfterTenThousandCells) {
  LinkedMapRecord map = Map(10005);
  map.chromosome_sizes = {3};
  map.chromosome_names = {"Chr1"};
  std::string genotypes(3 * 10005, 'A');
  genotypes[10000] = 'B';  // the 10001st cell of the first marker
  const std::string text = EcMapText(map, genotypes, std::vector<uint8_t>(3, 0));
  testing::WriteText("wide.map", text);
  const std::vector<std::string> lines = testing::ReadLines("wide.map");
  const auto row = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("mk_a", 0) == 0; });
  ASSERT_NE(row, lines.end());
  EXPECT_EQ(row->size(), 36u + 2 * 10000);
  EXPECT_EQ(*(row + 1), " B A A A A");
  Open(text);
  Ints(5);
  const Rows rows = Block(2, 10005);
  EXPECT_EQ(rows[0][10001], "B");
  EXPECT_EQ(rows[1][0], "mk_b");
}

TEST_F(DownstreamFiles, QtlFilesFollowTheirToolsFieldOrder) {
  const LinkedMapRecord map = Map(3);
  const std::string genotypes = "AHX" "DRB" "BBA";
  for (int kind = 0; kind < 3; ++kind) {
    const std::string text = kind == 0 ? SdlText(map, genotypes) : kind == 1 ? BipText(map, genotypes) : MetText(map, genotypes);
    Open(text);
    // .bip starts with its indicator (mapping); positions in cM of 3 chromosomes and 3
    // individuals; .bip and .met then count 0 traits or environments.
    std::vector<int32_t> header = {7, 2, 2, 1, 3, 3};
    if (kind == 1) header.insert(header.begin(), 1);
    if (kind != 0) header.push_back(0);
    EXPECT_EQ(Ints(static_cast<int>(header.size())), header);
    EXPECT_EQ(Block(3, 1), (Rows{{"Chr1", "2"}, {"Chr2", "0"}, {"Chr3", "1"}}));
    // The running chromosome counter lags behind an empty chromosome.
    EXPECT_EQ(Block(3, 2), (Rows{{"mk_a", "1", "0.0000"}, {"mk_b", "1", "12.5000"}, {"mk_c", "2", "3.2500"}}));
    EXPECT_EQ(Block(3, 3), (Rows{{"mk_a", "A", "H", "X"}, {"mk_b", "D", "R", "B"}, {"mk_c", "B", "B", "A"}}));
    const bool has_phenotype_block = text.find(BlockText(PhenotypeBlock())) != std::string::npos;
    EXPECT_EQ(has_phenotype_block, kind != 0);
    EXPECT_EQ(text.substr(text.size() - 2), "\n\n");
  }
  const std::string sdl = SdlText(map, genotypes);
  EXPECT_NE(sdl.find("\nChr1                           2\n"), std::string::npos);
  EXPECT_NE(sdl.find("\nmk_b" + std::string(31, ' ') + "    1     12.5000\n"), std::string::npos);
  EXPECT_NE(MetText(map, genotypes).find("         0  !Number of environments\n"), std::string::npos);
  EXPECT_EQ(MetText(map, genotypes).find("!Indicator"), std::string::npos);
}

}  // namespace
}  // namespace gae
