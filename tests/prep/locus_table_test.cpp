#include "prep/locus_table.h"

#include <gtest/gtest.h>

namespace gae {
namespace {

TEST(LocusTable, TextReadsBackAsWritten) {
  const LocusTable table{{{"S1_1034", "1A", 1034.0}, {"D2M1", "2", 12.75}, {"m3", "", std::nullopt}}};
  const std::string text = LocusTableText(table);
  EXPECT_EQ(text, "marker\tchromosome\tposition\nS1_1034\t1A\t1034\nD2M1\t2\t12.75\nm3\t\t\n");
  const auto back = ParseLocusTable(text);
  ASSERT_TRUE(back);
  ASSERT_EQ(back->rows.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(back->rows[i].marker, table.rows[i].marker);
    EXPECT_EQ(back->rows[i].chromosome, table.rows[i].chromosome);
    EXPECT_EQ(back->rows[i].position, table.rows[i].position);
  }
}

TEST(LocusTable, MalformedLinesAreNamed) {
  struct Case {
    const char* text;
    const char* why;
  } cases[] = {
      {"name\tchr\tpos\n", "line 1: "},
      {"marker\tchromosome\tposition\na\t1\n", "line 2: expected 3"},
      {"marker\tchromosome\tposition\na\t1\t5\nb\t1\t5,5\n", "line 3: position '5,5'"},
      {"marker\tchromosome\tposition\n\t1\t5\n", "line 2: no marker"},
      {"marker\tchromosome\tposition\na\t1\tnan\n", "line 2: position 'nan'"},
  };
  for (const Case& c : cases) {
    std::string why;
    EXPECT_FALSE(ParseLocusTable(c.text, &why)) << c.text;
    EXPECT_EQ(why.rfind(c.why, 0), 0u) << why;
  }
}

}  // namespace
}  // namespace gae
