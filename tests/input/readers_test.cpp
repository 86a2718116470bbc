// The readers under every validator and map tool: list-directed fields, header fields, map
// sections, marker rows and their decoders, phenotype rows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "frame/process_state.h"
#include "input/header_fields.h"
#include "input/list_reader.h"
#include "input/map_section.h"
#include "input/map_tool_reader.h"
#include "input/marker_decoders.h"
#include "input/outliers.h"
#include "input/phenotype_row.h"
#include "input/phenotype_section.h"
#include "input/raw_calls.h"
#include "input/repeated_names.h"
#include "input/tool_codes.h"
#include "support/alloc_counter.h"
#include "support/temp_dir.h"
#include "vocabulary/fixed_format.h"
#include "vocabulary/run_log.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using Readers = testing::InTempDir;

class ListReading : public testing::InTempDir {
 protected:
  InputFile& Load(const std::string& text) {
    testing::WriteText("in.txt", text);
    EXPECT_TRUE(file_.Open("in.txt"));
    return file_;
  }
  int32_t ReadInt() {
    file_.SkipRemarks();
    ListRead read(file_);
    int32_t v = -12345;
    return read.Int(v) ? v : -12345;
  }
  InputFile file_;
};

TEST_F(ListReading, RemarksBlankLinesAndTrailingCommentsArePassedOver) {
  Load("! title\n\n   \n\t\r\n!another\r\n7 ! F2\r\n!x\n  3,\t4\n");
  EXPECT_EQ(ReadInt(), 7);
  EXPECT_EQ(ReadInt(), 3);   // the 4 after it is the rest of the line: dropped
  EXPECT_EQ(ReadInt(), -12345);  // end of file
  Load(" ! not a remark\n5\n");  // a remark mark after a blank is data
  EXPECT_EQ(ReadInt(), -12345);
  Load(std::string(130, ' ') + "5\n6\n");  // only the first 128 characters make a line blank
  EXPECT_EQ(ReadInt(), 6);
}

TEST_F(ListReading, AReadSpansLinesAndDropsTheRestOfItsLastLine) {
  InputFile& in = Load("M1 A B\n  H\n X rest of line\nnext\n");
  in.SkipRemarks();
  {
    ListRead read(in);
    std::string name, token;
    ASSERT_TRUE(read.Text(name, 35));
    EXPECT_EQ(name, "M1" + std::string(33, ' '));
    for (const char* expected : {"A ", "B ", "H ", "X "}) {
      ASSERT_TRUE(read.Text(token, 2));
      EXPECT_EQ(token, expected);
    }
  }
  ListRead read(in);
  std::string word;
  ASSERT_TRUE(read.Text(word, 2));
  EXPECT_EQ(word, "ne");  // a longer item is cut to its field
}

TEST_F(ListReading, NumbersFollowTheListDirectedRules) {
  int32_t i = 0;
  EXPECT_TRUE(ParseInt("+42", i) && i == 42);
  EXPECT_TRUE(ParseInt("-2147483648", i) && i == -2147483647 - 1);
  for (const char* bad : {"2147483648", "7.0", "F2", "-", ""}) EXPECT_FALSE(ParseInt(bad, i)) << bad;
  // Reals take double-precision exponents and the special values.
  const std::pair<const char*, float> reals[] = {{"1.5d2", 150.0f}, {"-9999", -9999.0f}, {".5", 0.5f},
                                                 {"5.", 5.0f}, {"2E-1", 0.2f}};
  float v = 0;
  for (const auto& [text, value] : reals) EXPECT_TRUE(ParseReal(text, v) && v == value) << text;
  EXPECT_TRUE(ParseReal("NaN", v) && std::isnan(v));
  EXPECT_TRUE(ParseReal("-Infinity", v) && std::isinf(v) && v < 0);
  for (const char* bad : {"NA", "N/A", "na", "*", ".", "-", "1.5x", "0x10", "e5", "1e", "1.2.3"}) {
    EXPECT_FALSE(ParseReal(bad, v)) << bad;
  }
}

TEST_F(ListReading, MissingOrUnreadableFilesDoNotOpen) {
  InputFile in;
  EXPECT_FALSE(in.Open("no-such-file"));
  EXPECT_FALSE(in.Open(""));
  EXPECT_FALSE(in.Open("."));  // a folder
}

struct FieldCase {
  HeaderField field;
  int tool_code;
  const char* text;
  int expected_code;  // 0: accepted
};

TEST_F(Readers, EachFieldHasItsReadCodeAndItsRangeCode) {
  // Every read code and range code comes back through a whole file, with its words, in
  // validators_bad_input_test; here the ranges that differ from tool to tool, and their edges.
  using F = HeaderField;
  const FieldCase cases[] = {
      {F::kIndicator, 107, "1", 0},          {F::kPopulationType, 10, "20", 0},
      {F::kPopulationType, 104, "0", 2004},  {F::kPopulationType, 110, "12", 0},
      {F::kPopulationType, 110, "17", 0},    {F::kPopulationType, 30, "4", 0},
      {F::kPopulationType, 109, "99", 0},    {F::kSpaceType, 10, "2", 0},
      {F::kNumTraits, 107, "0", 0},
  };
  for (const FieldCase& c : cases) {
    testing::WriteText("h.txt", std::string("! header\n") + c.text + "   ! remark\n");
    InputFile in;
    ASSERT_TRUE(in.Open("h.txt"));
    MessageCode() = 0;
    int32_t value = -1;
    ::testing::internal::CaptureStdout();
    const bool ok = ReadHeaderField(in, c.field, c.tool_code, value);
    ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(ok, c.expected_code == 0) << c.text;
    EXPECT_EQ(MessageCode(), c.expected_code) << c.text;
  }
}

TEST(PairStoreSizeTest, CellCountWrapsIn32BitsAndARefusedAllocationFailsTheTest) {
  // 46342 * 46341 = 2147534622 wraps to -2147432674, halved to -1073716337: an empty array.
  const std::pair<int32_t, int32_t> counts[] = {{1, 0}, {2, 1}, {10000, 49995000}, {46341, 1073720970}, {46342, -1073716337}};
  for (const auto& [markers, cells] : counts) EXPECT_EQ(PairCellCount(markers), cells) << markers;
  EXPECT_TRUE(PairCellsFit(PairCellCount(46342)));
  auto refuse = [](std::size_t) -> void* { return nullptr; };
  EXPECT_FALSE(PairCellsFit(10, refuse));
  EXPECT_FALSE(PairCellsFit(PairCellCount(46341), refuse));  // however many cells
  EXPECT_TRUE(PairCellsFit(0, refuse));
  EXPECT_TRUE(PairCellsFit(10));
}

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
  EXPECT_EQ(map_.chromosome_names[0] + map_.chromosomes[0].marker_names[1], fmt::PadRight("1A", 19) + fmt::PadRight("b", 35));
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

TEST_F(Readers, LongRowsAreCaughtAndWrappedOrRemarkedRowsAreNot) {
  struct Case {
    const char* what;
    std::string rows;
    RawCallsRead expected;
    const char* marker;
    int items, line;
  };
  const std::vector<Case> cases = {
      {"rows of four", "M1 A H B A\nM2 B B H A\n", RawCallsRead::kRead, "", 0, 0},
      {"a row over two lines", "M1 A H\n B A\nM2 B,B,H,A\n", RawCallsRead::kRead, "", 0, 0},
      {"a remark after a row", "M1 A H B A ! first\nM2 B B H A\n", RawCallsRead::kRead, "", 0, 0},
      {"one genotype too many", "M1 A H B A\nM2 B B H A X\n", RawCallsRead::kLongRow, "M2", 5, 7},
      {"too many on a wrapped row", "M1 A H\nB A H H\nM2 B B H A\n", RawCallsRead::kLongRow, "M1", 6, 7},
      // The reader's own refusal explains a short row, which takes the next name as a genotype.
      {"a short row eats the next name", "M1 A H B\nM2 B B H A\n", RawCallsRead::kUnreadable, "", 0, 0},
      {"a code that is none", "M1 A H Q A\nM2 B B H A\n", RawCallsRead::kUnreadable, "", 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    testing::WriteText("rows.map", "7\n1\n1\n2\n4\n" + c.rows + "M1 0\nM2 0\n");
    RawCalls calls;
    LongRow row;
    EXPECT_EQ(ReadRawCalls("rows.map", kMapToolCode, calls, row), c.expected);
    if (c.expected == RawCallsRead::kLongRow) {
      EXPECT_EQ(row.name, c.marker);
      EXPECT_EQ(row.items, c.items);
      EXPECT_EQ(row.line, c.line);
    }
    if (c.expected == RawCallsRead::kRead) {
      ASSERT_EQ(calls.letters.size(), 2u);
      EXPECT_EQ(calls.letters[0], "AHBA");
      EXPECT_EQ(calls.letters[1], "BBHA");
    }
  }
}

class MapToolReader : public testing::InTempDir {
 protected:
  // Reads `path`; the code left in MessageCode.
  int Read(const std::string& path, int tool_code) {
    InputFile in;
    EXPECT_TRUE(in.Open(path));
    ::testing::internal::CaptureStdout();
    ReadMapToolInput(in, tool_code, input_);
    out_ = ::testing::internal::GetCapturedStdout();
    return MessageCode();
  }
  int ReadText(const std::string& text, int tool_code) {
    testing::WriteText("in.txt", text);
    return Read("in.txt", tool_code);
  }
  std::string Letters(int marker) const {
    const int n = input_.markers.population_size;
    return std::string(input_.markers.types.begin() + (marker - 1) * n,
                       input_.markers.types.begin() + marker * n);
  }
  MapToolInput input_;
  std::string out_;
};

TEST_F(MapToolReader, FilesAsUsersWriteThem) {
  // Windows line ends, tabs, a comment behind each value, rows wrapped over several lines and
  // names with the punctuation of real marker names.
  const std::string text =
      "! an F2\r\n7\t! F2\r\n1\r\n1\r\n3\r\n5\r\n\r\n"
      "Xgwm(1)-3A\tA H\r\n  B\tA H\r\n"
      "Satt.112|b  2 1 0 -1 1\r\n"
      "M*07_x\tD D\tB\r\n D X\r\n"
      "! anchors\r\n"
      "Xgwm(1)-3A 1\r\nSatt.112|b 0\r\nM*07_x 2\r\n";
  ASSERT_EQ(ReadText(text, 104), 0) << out_;
  EXPECT_EQ(Letters(1) + " " + Letters(2) + " " + Letters(3), "AHBAH AHBXH DDBDX");
  EXPECT_THAT(input_.markers.categories, ElementsAre(1, 1, 12));
  EXPECT_THAT(input_.anchors, ElementsAre(1, 0, 2));
}

TEST_F(MapToolReader, AnchorRowsFollowTheMarkersOneByOne) {
  const std::tuple<const char*, int, const char*> cases[] = {
      {"", 2301, "--Error2301: cannot read Anchor information! MarkerID=1 Anchor info=\n"},
      {"m1 0\nm2 none\n", 2301, "--Error2301: cannot read Anchor information! MarkerID=2 Anchor info=m2\n"},
      {"m1 0\nM2 1\n", 2302,
       "--Error2302: Inconsistent MarkerName! MarkerID=2 Name in Chromosome or MarkerType=m2 Name in Anchor info=M2\n"},
      {"m1 0\nm2 -1\n", 2303, "--Error2303: Invalid Anchor value! MarkerID=2 Anchor=-1\n"},
      {"m1 0\nm2 99\n", 0, ""}};
  for (const auto& [anchors, code, out] : cases) {
    EXPECT_EQ(ReadText(std::string("4\n1\n1\n2\n3\nm1 A B A\nm2 B A A\n") + anchors, 104), code) << anchors;
    EXPECT_EQ(out_, out);
  }
}

TEST_F(MapToolReader, AClaimOfTwoBillionMarkersOrLinesFailsWhenTheRowsRunOut) {
  // 2147483647 markers pass the size test of the pair store (its cell count wraps below one),
  // so only the missing rows stop the read.
  const std::string rows = "m1 A B A\nm2 B A A\n";
  testing::AllocationScope scope;
  EXPECT_EQ(ReadText("4\n1\n1\n2147483647\n3\n" + rows, 104), 2201);
  EXPECT_EQ(out_, "--Error2201: cannot read MarkerType! MarkerID=3\n");
  EXPECT_EQ(ReadText("4\n1\n1\n2\n2147483647\n" + rows, 104), 2201);
  EXPECT_EQ(out_, "--Error2201: cannot read MarkerType! MarkerID=1\n");
  EXPECT_EQ(ReadText("1\n1\n1\n2147483647\n2147483647\nABCD m1 AC BD\n", 20), 2201);
  EXPECT_LT(scope.PeakBytes(), 1 << 20);
}

struct Decoded {
  bool ok = false;
  int code = 0;
  std::string letters;
  int32_t category = 1;
};

// Decodes one row of blank-separated tokens with the decoder of `tool_code`.
Decoded Decode(int tool_code, int population_type, const std::string& row,
               const std::string& category = "") {
  std::vector<MarkerToken> tokens;
  std::istringstream in(row);
  for (std::string item; in >> item;) tokens.emplace_back(item);
  Decoded d;
  d.letters.assign(tokens.size(), '?');
  const std::string field = fmt::PadRight(category, 8);
  MessageCode() = 0;
  ::testing::internal::CaptureStdout();
  d.ok = DecodeMarkerRow(tool_code, population_type, MarkerRow{1, field, tokens},
                         std::span<char>(d.letters.data(), d.letters.size()), d.category);
  ::testing::internal::GetCapturedStdout();
  d.code = MessageCode();
  return d;
}

TEST_F(Readers, EachDecoderReadsFoldsAndClassesItsTokens) {
  const struct {
    int tool_code, population_type;
    const char *row, *field, *letters;  // letters nullptr: not checked
    int32_t category;                   // -1: not checked
    int code;
  } cases[] = {
      // Bi-parental tokens by their first two characters; all classes at once fit no category.
      {104, 7, "2 A AA 1 H AB BA 0 B BB 12 AH HA AX XA A* *A A_ _A D 10 BH HB BX XB B* *B B_ _B R -1 X XX * ** AAA BBx -12",
       "", "AAAHHHHBBBDDDDDDDDDDRRRRRRRRRRXXXXXABX", -1, 2209},
      {104, 7, "A B aa", "", nullptr, -1, 2202},  // case counts
      // Each bi-parental group folds what it cannot show.
      {107, 1, "A H X H", "", "AHXH", 1, 0},
      {107, 9, "A D H X", "", "AXHX", 1, 0},     // a dominant score says nothing there
      {107, 2, "B H R B", "", "BHXB", 1, 0},     // backcross to P2: recessive scores become X
      {107, 4, "A H B B", "", "AXBB", 1, 0},     // RIL: a heterozygote is missing
      {107, 17, "2 0 1 -1", "", "ABXX", 1, 0},
      {107, 7, "B D D X", "", "BDDX", 12, 0},    // F2 dominant: P1 and F1 alike
      {107, 7, "12 0 12 12", "", "DBDD", 12, 0}, // the token "12" stays D
      {107, 13, "A R R A", "", "ARRA", 10, 0},   // recessive: F1 and P2 alike
      {107, 8, "A H B D", "", "AHBD", 0, 2209},  // D mixed with H cannot be classed
      // Segregating lines; families of RILs lose their heterozygotes, backcross families keep them.
      {109, 0, "2 D A AA 0 B BB -1 X XX * **", "", "AAAABBBXXXXX", 1, 0},
      {109, 0, "B B X", "", nullptr, -1, 2211},
      {110, 4, "2 1 0 -1 AB", "", "AXBXX", -1, 0},
      {110, 1, "2 1 0 -1 AB", "", "AHBXH", -1, 0},
      {110, 4, "A A A", "", nullptr, -1, 0},  // no polymorphism test
      // Clonal categories, their types and letters.
      {20, 1, "AC AD BC BD XX", "ABCD", "ABCDX", 1, 0},
      {20, 1, "XC XD XX", "A=B", "EFX", 2, 0},
      {20, 2, "AX BX", "C=D", "GH", 3, 0},
      {20, 1, "AA AB BB", "AB=CD", "IJK", 4, 0},
      {20, 2, "AA AB", "A=CB=D", nullptr, 4, 0},
      {20, 2, "AA BB", "A=DB=C", nullptr, 5, 0},
      {20, 1, "XX XX", "ABCD", nullptr, -1, 2217},  // no data fails the category's polymorphism test
      // Pure lines. ABAB: the third founder carries A's allele and the fourth B's.
      {30, 2, "A B C D X", "ABAB", "ABABX", 1212, 0},
      {30, 1, "D C B A", "ABCC", "CCBA", 1233, 0},
      {30, 2, "A C X C", "AACC", "ACXC", 1133, 0},
      {30, 2, "A B C D", "ABCD", nullptr, 1234, 0},
      {30, 4, "A B C D E F G H", "ABCDEFGH", nullptr, 12345678, 0},  // H counts 8
      {30, 4, "A H A H", "ABCDEFGA", "AAAA", -1, 2229},
      {30, 2, "A BB", "ABCD", nullptr, -1, 2228},  // two-letter and lower-case tokens are other tokens
      {30, 2, "A a", "ABCD", nullptr, -1, 2228},
      {30, 2, "A B", "AB", nullptr, -1, 2227},  // the field is too short for four
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.tool_code) + "/" + std::to_string(c.population_type) + " " + c.field + ": " + c.row);
    const Decoded d = Decode(c.tool_code, c.population_type, c.row, c.field);
    EXPECT_EQ(d.code, c.code);
    EXPECT_EQ(d.ok, c.code == 0);
    if (c.letters != nullptr) {
      EXPECT_EQ(d.letters, c.letters);
    }
    if (c.category >= 0) {
      EXPECT_EQ(d.category, c.category);
    }
  }
}

// Parses a row; the values, or an empty list when the row was refused.
std::vector<float> Parse(std::vector<std::string_view> tokens, bool& flag) {
  std::vector<float> values(tokens.size(), 0.0f);
  ::testing::internal::CaptureStdout();
  const bool ok = ParsePhenotypeRow(tokens, values, flag);
  ::testing::internal::GetCapturedStdout();
  return ok ? values : std::vector<float>{};
}

TEST_F(Readers, PhenotypeRowsTakeMissingWordsOrTheOldMinusHundredNotBoth) {
  bool flag = false;
  EXPECT_THAT(Parse({"-100", "3", "-100.00001"}, flag), ElementsAre(-9999.0f, 3.0f, -9999.0f));
  EXPECT_FALSE(flag);
  EXPECT_THAT(Parse({"1.5", "NA", "2.0"}, flag), ElementsAre(1.5f, -9999.0f, 2.0f));
  EXPECT_TRUE(flag);
  // From now on -100 is a number, and every word is missing.
  EXPECT_THAT(Parse({"-100", "3", "na", "*", ".", "-", "-9999"}, flag),
              ElementsAre(-100.0f, 3.0f, -9999.0f, -9999.0f, -9999.0f, -9999.0f, -9999.0f));
  EXPECT_TRUE(flag);
  // The scan for words runs before any value is read: a bad token before a word switches too.
  flag = false;
  EXPECT_TRUE(Parse({"abc", "NA"}, flag).empty());
  EXPECT_TRUE(flag);
  EXPECT_THAT(Parse({"1.5D0", "2e1", "+.5"}, flag), ElementsAre(1.5f, 20.0f, 0.5f));
  EXPECT_EQ(MessageCode(), 0);
}

TEST(FiveNumbersTest, LinearInterpolationBetweenOrderStatistics) {
  // Of four values: ranks 0.75, 1.5 and 2.25 between the order statistics 1, 2, 3, 4.
  const float five[] = {5, 1, 4, 2, 3}, four[] = {4, 3, 2, 1};
  for (const auto& [f, expected] : {std::pair{FiveNumberSummary(five), std::array{1.0f, 2.0f, 3.0f, 4.0f, 5.0f}},
                                    std::pair{FiveNumberSummary(four), std::array{1.0f, 1.75f, 2.5f, 3.25f, 4.0f}}})
    EXPECT_EQ((std::array{f.minimum, f.q1, f.median, f.q3, f.maximum}), expected);
}

TEST(OutliersTest, FencesLieThreeInterquartileRangesOut) {
  // Sorted present values 10 11 12 13 14 100: Q1 = 11.25, Q3 = 13.75, IQR 2.5, fences 3.75
  // and 21.25. Missing values take no part.
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float row[] = {12, -9999.0f, 100, 10, nan, 14, 11, 13};
  const std::vector<Outlier> found = FindOutliers(row);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].line, 3);
  EXPECT_TRUE(found[0].high);
  EXPECT_FLOAT_EQ(found[0].statistic, (100.0f - 13.75f) / 2.5f);
  const float low_row[] = {-20, 10, 11, 12, 13};  // Q1 = 10, Q3 = 12, low fence 4
  const std::vector<Outlier> low = FindOutliers(low_row);
  ASSERT_EQ(low.size(), 1u);
  EXPECT_FALSE(low[0].high);
  EXPECT_FLOAT_EQ(low[0].statistic, (-20.0f - 10.0f) / (10.0f - 12.0f));
  // Q1 = Q3: the fences coincide and any other value is infinitely far out.
  const float flat[] = {5, 5, 5, 5, 6, 4};
  const std::vector<Outlier> f = FindOutliers(flat);
  ASSERT_EQ(f.size(), 2u);
  EXPECT_TRUE(std::isinf(f[0].statistic));
  EXPECT_TRUE(FindOutliers(std::vector<float>{-9999.0f, nan}).empty());
}

TEST_F(Readers, SpreadsheetRowsAndARepeatedOutlierReport) {
  // Tab-separated rows with Windows line ends; the second wraps over two lines.
  testing::WriteText("p.txt",
                     "! traits\r\nWidth\t1\t2\t3\t4\t5\t100\r\nLength\t7\t7\t7\r\n\t7\t7\t7\r\n");
  InputFile in;
  ASSERT_TRUE(in.Open("p.txt"));
  PhenotypeTable table;
  bool flag = false;
  {
    LogSession log("BIP");
    ASSERT_TRUE(ReadPhenotypeSection(in, 2, 6, table, flag));
  }
  EXPECT_THAT(table.values, ElementsAre(1, 2, 3, 4, 5, 100, 7, 7, 7, 7, 7, 7));
  EXPECT_EQ(table.names[1], "Length             ");
  // Q1 = 2.25, Q3 = 4.75 for the first row: 100 is (100 - 4.75) / 2.5 = 38.1 ranges out. The
  // report runs after each row, so the finding of the first row stands twice.
  const std::string heading[] = {"Warning: possible outlier in phenotype!",
                                 "     TraitID    SampleID  PhenoValue OutlierStat     Comment"};
  const std::string finding = "           1           6    100.0000     38.1000     TooHigh";
  EXPECT_THAT(testing::ReadLines("BIP.log"),
              ElementsAre(heading[0], heading[1], finding, heading[0], heading[1], finding));
  EXPECT_EQ(MessageCode(), 0);
}

}  // namespace
}  // namespace gae
