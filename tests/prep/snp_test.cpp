// SNP conversion: the parents' rule, the progeny rule, the reader's messages and the export.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "frame/process_state.h"
#include "gaengine.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "prep/map_input_text.h"
#include "prep/snp_calls.h"
#include "prep/snp_conversion.h"
#include "prep/snp_reader.h"
#include "support/bred_data_sets.h"
#include "support/command_run.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::HasSubstr;

std::vector<uint8_t> Calls(std::initializer_list<const char*> texts) {
  std::vector<uint8_t> calls;
  for (const char* t : texts) calls.push_back(static_cast<uint8_t>(NormaliseSnpCall(t)));
  return calls;
}

TEST(SnpCalls, ParentsRuleOfTheThreeModes) {
  EXPECT_EQ(NormaliseSnpCall("TA"), NormaliseSnpCall("AT"));
  EXPECT_EQ(NormaliseSnpCall("CG"), kCallGC);
  EXPECT_EQ(NormaliseSnpCall("**"), kCallNN);
  EXPECT_EQ(NormaliseSnpCall("AX"), -1);
  EXPECT_EQ(NormaliseSnpCall("A "), -1);
  // Pure lines: the digit of each founder is the first founder with its call (1212 and 1133:
  // the account of each marker, below).
  EXPECT_EQ(ParentCode(30, 2, Calls({"AA", "NN", "TT", "NN"})), 0);
  EXPECT_EQ(ParentCode(30, 2, Calls({"AA", "AA", "AA", "AA"})), 0);
  EXPECT_EQ(ParentCode(30, 4, Calls({"AA", "TT", "TA", "AT", "GG", "AA", "CC", "TT"})), 12335172);
  // Four parents (the codes of each category: the bundled examples), with parents missing.
  EXPECT_EQ(ParentCode(20, 1, Calls({"AA", "TT", "TT", "AA"})), 4);
  EXPECT_EQ(ParentCode(20, 1, Calls({"AA", "TT", "TT", "GG"})), 0);
  EXPECT_EQ(ParentCode(20, 1, Calls({"NN", "TT", "NN", "GG"})), 0);
  EXPECT_EQ(ParentCode(20, 1, Calls({"NN", "NN", "AA", "GG"})), -1);
  EXPECT_EQ(ParentCode(20, 1, Calls({"NN", "TT", "AA", "GG"})), -1);
  EXPECT_EQ(ParentCode(20, 1, Calls({"NN", "NN", "NN", "GG"})), 0);
  // Two parents.
  EXPECT_EQ(ParentCode(10, 7, Calls({"AA", "AA"})), 0);
  EXPECT_EQ(ParentCode(10, 7, Calls({"NN", "NN"})), 0);
}

SnpDesign Design(int tool_code, int population_type, int method) {
  SnpInput input;
  input.tool_code = tool_code;
  input.population_type = population_type;
  input.missing_method = method;
  input.num_parents = NumSnpParents(tool_code, population_type);
  return DesignOf(input);
}

TEST(SnpConversion, ProgenyRuleAndMissingParents) {
  // A backcross to P1 cannot show P2's homozygote; lines count a heterozygote as missing.
  SnpMarkerResult r = ConvertSnpMarker(Design(2, 1, 1), Calls({"AA", "TT"}), Calls({"AA", "TA", "NN"}));
  EXPECT_EQ(r.letters, "AHX");
  r = ConvertSnpMarker(Design(2, 1, 1), Calls({"AA", "TT"}), Calls({"AA", "TT"}));
  EXPECT_EQ(r.failure, kSnpInvalidMarkerType);
  EXPECT_EQ(r.failure_index, 2);
  r = ConvertSnpMarker(Design(2, 4, 1), Calls({"AA", "TT"}), Calls({"AA", "AT", "TT"}));
  EXPECT_EQ(r.letters, "AXB");
  r = ConvertSnpMarker(Design(2, 7, 1), Calls({"AT", "TT"}), Calls({"AA", "TT"}));
  EXPECT_EQ(r.failure, kSnpIllegalMarker);
  EXPECT_EQ(r.failure_index, 1);
  // Parents that say polymorphic over lines of a single class: deleted on the progeny's word.
  r = ConvertSnpMarker(Design(2, 7, 1), Calls({"AA", "TT"}), Calls({"AA", "AA", "NN"}));
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.source, PolymorphismSource::kProgenyAndParent);
  // Method 1 deletes; method 2 finds TT, the only allele that makes every call possible.
  const auto progeny = Calls({"AA", "AT", "TT", "AT"});
  EXPECT_EQ(ConvertSnpMarker(Design(2, 7, 1), Calls({"AA", "NN"}), progeny).code, 0);
  r = ConvertSnpMarker(Design(2, 7, 2), Calls({"AA", "NN"}), progeny);
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.letters, "AHBH");
  EXPECT_EQ(r.source, PolymorphismSource::kProgenyAndParent);
  // Lines of the typed parent's call alone leave the other allele open.
  EXPECT_EQ(ConvertSnpMarker(Design(2, 7, 2), Calls({"AA", "NN"}), Calls({"AA", "AA"})).code, 0);
  // Four parents: the clonal letters (AC=A ... XX=X); a side wholly missing comes from the lines.
  r = ConvertSnpMarker(Design(20, 1, 1), Calls({"AA", "TT", "GG", "CC"}), Calls({"AG", "CA", "TG", "TC", "NN"}));
  EXPECT_EQ(r.letters, "ABCDX");
  r = ConvertSnpMarker(Design(20, 2, 1), Calls({"AA", "TT", "TT", "AA"}), Calls({"AA", "TA", "TT"}));
  EXPECT_EQ(r.code, 5);
  EXPECT_EQ(r.letters, "IJK");
  r = ConvertSnpMarker(Design(20, 1, 2), Calls({"NN", "NN", "GG", "CC"}), Calls({"AG", "AC", "TG", "TC"}));
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.source, PolymorphismSource::kProgeny);
  // Pure lines: the first founder with the call; a single missing founder is inferred only
  // when the typed founders all agree.
  r = ConvertSnpMarker(Design(30, 2, 1), Calls({"AA", "TT", "AA", "TT"}), Calls({"TT", "AA", "AT", "--"}));
  EXPECT_EQ(r.letters, "BAXX");
  r = ConvertSnpMarker(Design(30, 2, 2), Calls({"AA", "AA", "AA", "NN"}), Calls({"TT", "AA"}));
  EXPECT_EQ(r.code, 1114);
  EXPECT_EQ(r.letters, "DA");
  EXPECT_EQ(ConvertSnpMarker(Design(30, 2, 2), Calls({"AA", "TT", "AA", "NN"}), Calls({"TT", "AA"})).code, 0);
}

// A SNP file of two parents (or more) from marker rows "name p1 p2 ..." and "name c1 c2 ...".
std::string SnpFile(int population_type, int markers, int size, const std::string& method,
                    const std::vector<std::string>& parents, const std::vector<std::string>& progeny) {
  std::string text = "!SNP test file\n" + std::to_string(population_type) + "\n1\n1\n" +
                     std::to_string(markers) + "\n" + std::to_string(size) + "\n" + method + " !method\n";
  for (const auto& row : parents) text += row + "\n";
  text += "\n!progeny\n";
  for (const auto& row : progeny) text += row + "\n";
  text += "!anchors\n";
  for (int m = 1; m <= markers; ++m) text += std::string("S") + std::to_string(m) + " 0\n";
  return text;
}

struct SnpRun {
  int status = -1;
  std::vector<int> anchors, codes;
};

SnpRun CheckSnp(int tool_code, const std::string& text, int markers) {
  testing::WriteText("t.snp", text);
  SnpRun run;
  run.anchors.assign(markers, -1);
  run.codes.assign(markers, -1);
  std::vector<int> names(static_cast<std::size_t>(markers) * 35);
  ::testing::internal::CaptureStdout();
  CheckErrorSNP(tool_code, 5, "t.snp", markers, names.data(), run.anchors.data(), run.codes.data(), &run.status);
  ::testing::internal::GetCapturedStdout();
  return run;
}

class SnpCheck : public testing::InTempDir {};

TEST_F(SnpCheck, EveryMessageOfTheReaderAndTheRule) {
  const std::vector<std::string> parents = {"S1 AA TT", "S2 TT GG"};
  const std::vector<std::string> progeny = {"S1 AA AT", "S2 GT TT"};
  struct Case {
    std::string method;
    std::vector<std::string> parents, progeny;
    int code;
    std::string line;
    std::string cut_at = {};  // the file ends here: a row that runs out of items
  } cases[] = {
      {"x", parents, progeny, 3121, "--Error3121: cannot read Method to deal with missing markers in parent!"},
      {"3", parents, progeny, 3122, "--Error3122: Method to deal with missing markers out of range [1,2]! Input value=3"},
      {"1", {"S1 AA TT", "S2 TT"}, progeny, 3123,
       "--Error3123: cannot read MarkerType of parents in the SNP input file! MarkerID=2", "\n!progeny"},
      {"1", {"S1 AA TT", "S2 TT AB"}, progeny, 3124,
       "--Error3124: Markertype of the parent out of range (AA,TT,GG,CC,AT,AG,AC,TG,TC,GC,NN)! MarkerID=2 ParentID=2 Input MarkerType=AB"},
      {"1", parents, {"S1 AA AT", "S2 GT"}, 3125,
       "--Error3125: cannot read MarkerType of progenies in the SNP input file! MarkerID=2", "!anchors"},
      {"1", parents, {"S1 AA AT", "S3 GT TT"}, 3126,
       "MarkerID=2; Name in progenies=S3; Name in parents=S2"},
      {"1", parents, {"S1 AA AT", "S2 GT T"}, 3127, "MarkerID=2 LineID=2 Input MarkerType=T"},
      {"1", {"S1 AA TT", "S2 TG GG"}, progeny, 3128, "--Error3128: illegal marker! MarkerID=2 ParentID=1 Input MarkerType=TG"},
      {"1", parents, {"S1 AA AT", "S2 GT AA"}, 3130, "--Error3130: Invalid MarkerType! MarkerID=2 LineID=2 Input MarkerType=AA"},
      {"1", {"S1 AA TT", "S1 TT GG"}, progeny, 2230, "two markers have same name! MarkerID1=2 MarkerID2=1 MarkerName=S1"},
  };
  for (const Case& c : cases) {
    ::remove("SNP.log");
    std::string text = SnpFile(7, 2, 2, c.method, c.parents, c.progeny);
    if (!c.cut_at.empty()) text.resize(text.find(c.cut_at));
    const SnpRun run = CheckSnp(2, text, 2);
    EXPECT_EQ(run.status, c.code) << c.line;
    testing::ExpectHasAll(testing::ReadText("SNP.log"), {c.line, "error found in DLL! DLL name=DLL CheckErrorSNP"});
  }
}

TEST_F(SnpCheck, ArraysAndTheAccountOfEachMarker) {
  // Four founders: 1212, 1133, a monomorphic marker, a missing founder inferred, and two
  // missing founders.
  const std::string text = SnpFile(
      2, 5, 4, "2", {"S1 AA TT AA TT", "S2 AA AA TT TT", "S3 GG GG GG GG", "S4 CC CC CC NN", "S5 NN AA NN TT"},
      {"S1 AA TT AA TT", "S2 AA TT AA TT", "S3 GG GG GG GG", "S4 CC GG CC GG", "S5 AA TT AA TT"});
  const SnpRun run = CheckSnp(30, text, 5);
  ASSERT_EQ(run.status, 0);
  EXPECT_EQ(run.codes, (std::vector<int>{1212, 1133, 0, 1114, 0}));
  EXPECT_EQ(run.anchors, (std::vector<int>{0, 0, 0, 0, 0}));
  const std::string log = testing::ReadText("SNP.log");
  testing::ExpectHasAll(log, {"Warning: the marker will be deleted for non-polymorphism! MarkerID=3\n",
                              "MarkerID=1. Polymorphism was determined only by parent.",
                              "MarkerID=4. Polymorphism was determined by progeny and parent.",
                              "DLL CheckErrorSNP run successfully!"});
  testing::ExpectHasNone(log, {"non-polymorphism! MarkerID=1\n"});
  const SnpRun sides = CheckSnp(20, SnpFile(1, 1, 4, "2", {"S1 NN NN GG CC"}, {"S1 AG AC TG TC"}), 1);
  EXPECT_EQ(sides.codes, std::vector<int>{1});
  EXPECT_THAT(testing::ReadText("SNP.log"), HasSubstr("MarkerID=1. Polymorphism was determined only by progeny."));
}

TEST_F(SnpCheck, SimulatedF2WrittenAsCallsConvertsBackToItsGenotypes) {
  std::vector<testing::SimulatedMarker> markers;
  for (int m = 0; m < 12; ++m) markers.push_back({std::string("S") + std::to_string(m + 1), 8.0 * m});
  const int n = 150;
  const std::vector<std::string> genotypes = testing::SimulateF2Chromosome(markers, n, 0.05, 7);
  std::mt19937 spelling(3);
  std::vector<std::string> parents, progeny;
  for (std::size_t m = 0; m < markers.size(); ++m) {
    // Alleles differ from marker to marker; heterozygotes and missing calls in every spelling.
    const std::string p = m % 2 ? "GG" : "AA", q = m % 2 ? "CC" : "TT";
    const std::string het[2] = {m % 2 ? "GC" : "AT", m % 2 ? "CG" : "TA"};
    const std::string none[4] = {"NN", "--", "XX", "**"};
    parents.push_back(markers[m].name + " " + p + " " + q);
    std::string row = markers[m].name;
    for (char g : genotypes[m])
      row += " " + (g == 'A' ? p : g == 'B' ? q : g == 'H' ? het[spelling() % 2] : none[spelling() % 4]);
    progeny.push_back(row);
  }
  const std::string text = SnpFile(7, 12, n, "1", parents, progeny);
  const SnpRun run = CheckSnp(2, text, 12);
  ASSERT_EQ(run.status, 0);
  EXPECT_EQ(run.codes, std::vector<int>(12, 1));
  InputFile in;
  ASSERT_TRUE(in.Open("t.snp"));
  SnpInput input;
  ReadSnpInput(in, 2, input);
  const SnpConversion conversion = ConvertSnpInput(input);
  MapInputRecord record{2, 7, 1, 1, n, input.names, {}, {}, input.anchors};
  for (std::size_t m = 0; m < markers.size(); ++m) {
    EXPECT_EQ(conversion.markers[m].letters, genotypes[m]) << m;
    record.categories.push_back(conversion.markers[m].code);
    record.letters.push_back(conversion.markers[m].letters);
  }
  // The written MAP file is read back by the MAP reader with the same genotypes.
  testing::WriteText("t.map", MapInputText(record));
  InputFile map;
  ASSERT_TRUE(map.Open("t.map"));
  MapToolInput data;
  ReadMapToolInput(map, 104, data);
  ASSERT_EQ(MessageCode(), 0);
  for (std::size_t m = 0; m < markers.size(); ++m)
    EXPECT_EQ(std::string(data.markers.types.data() + m * n, n), genotypes[m]);
}

TEST_F(SnpCheck, BundledExamplesConvertAndBinningFileChecks) {
  struct Example {
    const char* file;
    int tool_code;
    std::vector<int> codes;
  } examples[] = {
      {"examples/f2_parents_progeny.snp", 2, std::vector<int>(8, 1)},
      {"examples/double_cross_parents_progeny.snp", 20, {1, 2, 3, 4, 5, 0, 1, 1}},
      {"examples/eight_way_ril_parents_progeny.snp", 30,
       {12121122, 11331313, 12212112, 12221122, 11115555, 12112212, 0, 0, 11331113, 12111111}},
  };
  for (const Example& e : examples) {
    const std::string path = testing::SourcePath(e.file);
    int markers = 0, status = -1;
    SNPFindNumMarkers(e.tool_code, static_cast<int>(path.size()), path.c_str(), &markers, &status);
    ASSERT_EQ(status, 0) << e.file;
    const SnpRun run = CheckSnp(e.tool_code, testing::ReadText(path), markers);
    EXPECT_EQ(run.status, 0) << e.file;
    EXPECT_EQ(run.codes, e.codes) << e.file;
  }
  const std::string bin = testing::SourcePath("examples/f2_redundant.bin");
  std::vector<int> names(350), anchors(10, -1), categories(10, -1);
  int status = -1;
  ::testing::internal::CaptureStdout();
  CheckErrorBIN(2, static_cast<int>(bin.size()), bin.c_str(), 10, names.data(), anchors.data(),
                categories.data(), &status);
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(status, 0);
  EXPECT_EQ(categories, std::vector<int>(10, 1));
  EXPECT_EQ(anchors, std::vector<int>(10, 0));
  EXPECT_EQ(names[1], 'B');  // character 1 of marker 2
  EXPECT_THAT(testing::ReadText("BIN.log"), HasSubstr("DLL CheckErrorBIN run successfully!"));
}

}  // namespace
}  // namespace gae
