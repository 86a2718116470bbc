// The files written for the next tools, read back with the list-directed reader in the order
// the tools read them.
#include "report/downstream_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "report/remark_blocks.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

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
  int32_t Int() {
    in_.SkipRemarks();
    ListRead read(in_);
    int32_t v = -999;
    EXPECT_TRUE(read.Int(v));
    return v;
  }
  // One row: a name, then `tokens` items, as a list-directed read.
  std::vector<std::string> Row(std::size_t tokens) {
    ListRead read(in_);
    std::vector<std::string> items;
    for (std::size_t k = 0; k <= tokens; ++k) {
      std::string_view item;
      EXPECT_TRUE(read.Item(item));
      items.emplace_back(item);
    }
    return items;
  }

  InputFile in_;
};

TEST_F(DownstreamFiles, CorrectedMapFileReadsBackAndDropsMonomorphicMarkers) {
  const LinkedMapRecord map = Map(3);
  const std::vector<uint8_t> lost{0, 1, 0};
  const std::string text = EcMapText(map, "AHX" "XXB" "DRB", lost);
  EXPECT_NE(text.find("\n         7  !Mapping Population (see remarks above)\n"), std::string::npos);
  Open(text);
  EXPECT_EQ(Int(), 7);
  EXPECT_EQ(Int(), 2);
  EXPECT_EQ(Int(), 1);  // the input's space type
  EXPECT_EQ(Int(), 2);  // markers kept
  EXPECT_EQ(Int(), 3);
  in_.SkipRemarks();
  EXPECT_EQ(Row(3), (std::vector<std::string>{"mk_a", "A", "H", "X"}));
  EXPECT_EQ(Row(3), (std::vector<std::string>{"mk_c", "D", "R", "B"}));
  in_.SkipRemarks();
  EXPECT_EQ(Row(1), (std::vector<std::string>{"mk_a", "1"}));
  EXPECT_EQ(Row(1), (std::vector<std::string>{"mk_c", "3"}));  // its own chromosome
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
  for (int k = 0; k < 5; ++k) Int();
  in_.SkipRemarks();
  const std::vector<std::string> first = Row(10005);
  EXPECT_EQ(first[10001], "B");
  EXPECT_EQ(Row(10005)[0], "mk_b");
}

TEST_F(DownstreamFiles, QtlFilesFollowTheirToolsFieldOrder) {
  const LinkedMapRecord map = Map(3);
  const std::string genotypes = "AHX" "DRB" "BBA";
  for (int kind = 0; kind < 3; ++kind) {
    const std::string text = kind == 0 ? SdlText(map, genotypes) : kind == 1 ? BipText(map, genotypes) : MetText(map, genotypes);
    Open(text);
    if (kind == 1) {
      EXPECT_EQ(Int(), 1);  // indicator: mapping
    }
    EXPECT_EQ(Int(), 7);
    EXPECT_EQ(Int(), 2);
    EXPECT_EQ(Int(), 2);  // positions
    EXPECT_EQ(Int(), 1);  // centiMorgans
    EXPECT_EQ(Int(), 3);  // chromosomes
    EXPECT_EQ(Int(), 3);  // individuals
    if (kind != 0) {
      EXPECT_EQ(Int(), 0);  // traits or environments
    }
    in_.SkipRemarks();
    EXPECT_EQ(Row(1), (std::vector<std::string>{"Chr1", "2"}));
    EXPECT_EQ(Row(1), (std::vector<std::string>{"Chr2", "0"}));
    EXPECT_EQ(Row(1), (std::vector<std::string>{"Chr3", "1"}));
    in_.SkipRemarks();
    EXPECT_EQ(Row(2), (std::vector<std::string>{"mk_a", "1", "0.0000"}));
    EXPECT_EQ(Row(2), (std::vector<std::string>{"mk_b", "1", "12.5000"}));
    // The running chromosome counter lags behind an empty chromosome.
    EXPECT_EQ(Row(2), (std::vector<std::string>{"mk_c", "2", "3.2500"}));
    in_.SkipRemarks();
    EXPECT_EQ(Row(3), (std::vector<std::string>{"mk_a", "A", "H", "X"}));
    EXPECT_EQ(Row(3), (std::vector<std::string>{"mk_b", "D", "R", "B"}));
    EXPECT_EQ(Row(3), (std::vector<std::string>{"mk_c", "B", "B", "A"}));
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
