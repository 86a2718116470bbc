// Whole variant files in: small files stated by hand for each design, written as plain VCF,
// bgzipped VCF and BCF by htslib's writer, with the codes worked out by hand from the parents'
// alleles; and bred populations, whose written file must carry exactly the plants' genotypes.
// Every file is read back by the map tools' own reader.
// The import's rules that no file format changes: the breeder's filters on one F2 site, the
// design an output name and the parents choose, and the names markers get.
#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "prep/locus_table.h"
#include "prep/map_input_text.h"
#include "support/temp_dir.h"
#include "support/variant_files.h"
#include "vcf_import/import_design.h"
#include "vcf_import/import_files.h"
#include "vcf_import/marker_names.h"
#include "vcf_import/site_import.h"
#include "vcf_import/vcf_import.h"
#include "vocabulary/message_code.h"

namespace gae {
namespace {

using testing::VariantFormat;

struct ReadBack {
  int code = -1;
  std::vector<std::string> names;    // trimmed
  std::vector<int32_t> categories;
  std::vector<std::string> letters;  // per marker
};

// Imports `file` into `out` and reads the placed file with the map tool's reader.
ReadBack ImportAndRead(const std::string& file, const std::string& out, const ImportDesign& design,
                       const std::vector<std::string>& parents, VcfImport& data) {
  std::string error;
  EXPECT_TRUE(ReadVcfImport(VcfImportRequest{file, design, parents, {}, 0, nullptr}, data, error)) << error;
  const PlacedImport placed = PlaceImportedFiles(out, ReaderToolCode(design), data.record, data.loci);
  EXPECT_TRUE(placed.Ok()) << placed.error << " reader code " << placed.reader_code;
  ReadBack back;
  InputFile in;
  MapToolInput input;
  if (!in.Open(out)) return back;
  ReadMapToolInput(in, ReaderToolCode(design), input);
  back.code = std::exchange(MessageCode(), 0);
  const MarkerSection& m = input.markers;
  for (std::size_t k = 0; k < m.names.size(); ++k) {
    back.names.push_back(m.names[k].substr(0, m.names[k].find_last_not_of(' ') + 1));
    back.categories.push_back(m.categories[k]);
    const auto row = m.types.begin() + static_cast<std::ptrdiff_t>(k * m.population_size);
    back.letters.emplace_back(row, row + m.population_size);
  }
  return back;
}

std::string OutputFor(const ImportDesign& d) { return d.tool_code == 20 ? "out.cdm" : d.tool_code == 30 ? "out.plm" : "out.map"; }

std::string Rec(long pos, const std::string& id, const std::string& alt, const std::vector<std::string>& gts) {
  return testing::VcfRecord(pos < 1000 ? "chr1" : "chr2", pos, id, "A", alt, "GT", gts);
}

struct HandFile {
  const char* what;
  ImportDesign design;
  std::vector<std::string> samples;
  int parents;
  std::string records;
  std::vector<std::string> names;
  std::vector<int32_t> categories;
  std::vector<std::string> letters;
  uint64_t not_shown;  // calls of kept sites that the population cannot show
};

// Letters: bi-parental A H B X; clonal AC AD BC BD = A B C D, XC XD = E F, AX BX = G H,
// AA AB BB = I J K; pure lines the first founder with the line's allele.
std::vector<HandFile> HandFiles() {
  return {
      // A is the first parent's allele, whichever; an allele of neither parent is no class.
      {"F2", {2, 7, 2}, {"P1", "P2", "o1", "o2", "o3"}, 2,
       Rec(100, "m1", "C", {"0/0", "1/1", "0/0", "0/1", "1/1"}) +
           Rec(200, ".", "C,G", {"2/2", "0/0", "0/2", "1/2", "2/2"}) +
           Rec(300, "alike", "C", {"0/0", "0/0", "0/0", "0/1", "1/1"}) +
           Rec(1050, "m4", "C", {"1/1", "0/0", "1/1", "0|1", "./."}),
       {"m1", "chr1_200", "m4"}, {1, 1, 1}, {"AHB", "HXA", "AHX"}, 1},
      {"P1BC1F1", {2, 1, 2}, {"P1", "P2", "b1", "b2", "b3"}, 2,
       Rec(10, "m1", "C", {"0/0", "1/1", "0/0", "0/1", "1/1"}) + Rec(20, "het", "C", {"0/1", "1/1", "0/0", "0/1", "0/1"}) +
           Rec(30, "gone", "C", {"0/0", "./.", "0/0", "0/1", "0/1"}),
       {"m1"}, {1}, {"AHX"}, 1},
      // A heterozygous line is no class of a RIL; a haploid call is a homozygote.
      {"RIL", {2, 4, 2}, {"P1", "P2", "r1", "r2", "r3", "r4"}, 2,
       Rec(10, "m1", "C", {"1/1", "0/0", "1/1", "0/1", "0", "1"}) +
           Rec(20, "one_class", "C", {"0/0", "1/1", "0/0", "0/0", "./.", "0/0"}),
       {"m1"}, {1}, {"AXBA"}, 1},
      {"clonal F1", {20, 1, 2}, {"F", "M", "o1", "o2", "o3", "o4"}, 2,
       Rec(10, "abcd", "C,G,T", {"0/1", "2/3", "0/2", "1/3", "0/3", "1/2"}) +
           Rec(20, "aaxab", "C", {"0/0", "0/1", "0/0", "0/1", "0/1", "./."}) +
           Rec(30, "abxab", "C", {"1/0", "0/1", "0/0", "0/1", "1/1", "0/1"}) +
           Rec(40, "abxaa", "C", {"0/1", "1/1", "0/1", "1/1", "0/1", "0/0"}) +
           Rec(50, "abxac", "C,G", {"0/1", "0/2", "0/0", "0/2", "0/1", "1/2"}) +
           Rec(60, "aaxbb", "C", {"0/0", "1/1", "0/1", "0/1", "0/1", "0/1"}),
       {"abcd", "aaxab", "abxab", "abxaa", "abxac"}, {1, 2, 4, 3, 1}, {"ADBC", "EFFX", "IJKJ", "GHGX", "ABCD"}, 1},
      // (P1 x P2) x (P3 x P4): A, B, C, D are the grandparents' alleles.
      {"double cross", {20, 2, 4}, {"G1", "G2", "G3", "G4", "o1", "o2", "o3"}, 4,
       Rec(7, "adbc", "C", {"0/0", "1/1", "1/1", "0/0", "0/0", "0/1", "1/1"}) +
           Rec(8, "acbd", "C", {"0/0", "1/1", "0/0", "1/1", "1/1", "0/1", "0/0"}) +
           Rec(9, "ab_ac", "C,G", {"0/0", "1/1", "0/0", "2/2", "0/1", "1/2", "0/0"}) +
           Rec(10, "aa_bc", "C,G", {"0/0", "0/0", "1/1", "2/2", "0/1", "0/2", "0/1"}) +
           Rec(11, "het", "C", {"0/1", "1/1", "0/0", "1/1", "0/1", "0/1", "0/0"}),
       {"adbc", "acbd", "ab_ac", "aa_bc"}, {5, 4, 1, 2}, {"IJK", "KJI", "CDA", "EFE"}, 0},
      {"4PRIL", {30, 2, 4}, {"F1", "F2", "F3", "F4", "l1", "l2", "l3", "l4"}, 4,
       Rec(5, "abab", "C", {"0/0", "1/1", "0/0", "1/1", "0/0", "1/1", "0/1", "1/1"}) +
           Rec(6, "abcc", "C,G", {"0/0", "1/1", "2/2", "2/2", "2/2", "0/0", "1/1", "2/2"}) +
           Rec(7, "abad", "C,G,T", {"0/0", "1/1", "0/0", "2/2", "0/0", "1/1", "2/2", "3/3"}) +
           Rec(8, "aaaa", "C", {"0/0", "0/0", "0/0", "0/0", "0/0", "1/1", "1/1", "0/0"}),
       {"abab", "abcc", "abad"}, {1212, 1233, 1214}, {"ABXB", "CABC", "ABDX"}, 2},
      {"8PDH", {30, 3, 8}, {"F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "l1", "l2", "l3"}, 8,
       Rec(5, "abbaeeab", "C,G", {"0/0", "1/1", "1/1", "0/0", "2/2", "2/2", "0/0", "1/1", "2/2", "1/1", "0/0"}),
       {"abbaeeab"}, {12215512}, {"EBA"}, 0},
  };
}

std::string CaseName(const char* what, VariantFormat format) {
  std::string name;
  for (char c : std::string(what) + testing::VariantExtension(format))
    name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

class HandWrittenFiles : public testing::InTempDir,
                         public ::testing::WithParamInterface<std::tuple<int, VariantFormat>> {};

TEST_P(HandWrittenFiles, EachFormatGivesTheCodesWorkedOutByHand) {
  const HandFile f = HandFiles()[static_cast<std::size_t>(std::get<0>(GetParam()))];
  const std::string file = std::string("calls") + testing::VariantExtension(std::get<1>(GetParam()));
  testing::WriteVariantFile(file, testing::VcfHeader(f.samples) + f.records, std::get<1>(GetParam()));
  VcfImport data;
  const ReadBack back = ImportAndRead(file, OutputFor(f.design), f.design,
                                      {f.samples.begin(), f.samples.begin() + f.parents}, data);
  EXPECT_EQ(back.code, 0);
  EXPECT_EQ(back.names, f.names);
  EXPECT_EQ(back.categories, f.categories);
  EXPECT_EQ(back.letters, f.letters);
  EXPECT_EQ(data.tally.calls.not_shown, f.not_shown);
  // The locus table holds each marker's CHROM and POS as the file has them.
  const auto loci = ReadLocusTableBeside(OutputFor(f.design));
  ASSERT_TRUE(loci.has_value());
  ASSERT_EQ(loci->rows.size(), f.names.size());
  for (std::size_t k = 0; k < f.names.size(); ++k) {
    const LocusRow& row = loci->rows[k];
    const std::string pos = std::to_string(static_cast<long>(row.position.value_or(-1)));
    const std::string at = row.chromosome + "\t" + pos + "\t";
    EXPECT_EQ(row.marker, f.names[k]);
    EXPECT_TRUE(f.records.find(at + f.names[k] + "\t") != std::string::npos ||
                (f.names[k] == row.chromosome + "_" + pos && f.records.find(at + ".\t") != std::string::npos))
        << f.names[k];
  }
}

INSTANTIATE_TEST_SUITE_P(DesignsAndFormats, HandWrittenFiles,
                         ::testing::Combine(::testing::Range(0, 7),
                                            ::testing::Values(VariantFormat::kPlain, VariantFormat::kBgzip,
                                                              VariantFormat::kBcf)),
                         [](const auto& info) {
                           return CaseName(HandFiles()[static_cast<std::size_t>(std::get<0>(info.param))].what,
                                           std::get<1>(info.param));
                         });

struct BredCase {
  const char* what;
  ImportDesign design;
  int population_type;  // of the breeder, 0 a clonal F1
};
const BredCase kBred[] = {{"F2", {2, 7, 2}, 7}, {"backcross", {2, 1, 2}, 1}, {"clonal F1", {20, 1, 2}, 0}};

class BredPopulations : public testing::InTempDir,
                        public ::testing::WithParamInterface<std::tuple<int, VariantFormat>> {};

TEST_P(BredPopulations, MarkersCarryThePlantsGenotypesAndOnlyUninformativeSitesDrop) {
  const BredCase& c = kBred[std::get<0>(GetParam())];
  const testing::BredCalls bred = testing::BredPopulationCalls(c.population_type, 35, 80, 0.1, 20261125);
  const std::string file = std::string("bred") + testing::VariantExtension(std::get<1>(GetParam()));
  testing::WriteVariantFile(file, bred.vcf, std::get<1>(GetParam()));
  VcfImport data;
  const ReadBack back = ImportAndRead(file, OutputFor(c.design), c.design, {"mother", "father"}, data);
  EXPECT_EQ(back.code, 0);
  EXPECT_EQ(back.names, bred.names);
  EXPECT_EQ(back.categories, std::vector<int32_t>(bred.categories.begin(), bred.categories.end()));
  ASSERT_EQ(back.letters.size(), bred.types.size());
  for (std::size_t m = 0; m < bred.types.size(); ++m) {
    std::string types;
    for (char l : back.letters[m]) types += c.population_type == 0 ? ClonalToken(l) : std::string(1, l);
    EXPECT_EQ(types, bred.types[m]) << bred.names[m];
  }
  EXPECT_EQ(data.tally.sites, static_cast<uint64_t>(bred.sites));
  EXPECT_EQ(data.tally.dropped[static_cast<std::size_t>(DropReason::kParentsUninformative)],
            bred.sites - bred.names.size());
  EXPECT_EQ(data.tally.calls.not_shown, 0u);
}

INSTANTIATE_TEST_SUITE_P(BreederAndFormats, BredPopulations,
                         ::testing::Combine(::testing::Range(0, 3),
                                            ::testing::Values(VariantFormat::kPlain, VariantFormat::kBgzip)),
                         [](const auto& info) {
                           return CaseName(kBred[std::get<0>(info.param)].what, std::get<1>(info.param));
                         });

SampleCall Call(const std::string& gt) {  // "0/1", "./."
  return gt[0] == '.' ? SampleCall{} : SampleCall{static_cast<int16_t>(gt[0] - '0'), static_cast<int16_t>(gt[2] - '0')};
}

// Parents 0/0 and 1/1 (depth 20, quality 50), then four plants.
struct FilterCase {
  const char* what;
  CallFilters filters;
  std::vector<std::string> progeny;
  DropReason reason;
  std::string letters;
  uint64_t low_depth, low_quality;
};
void PrintTo(const FilterCase& c, std::ostream* os) { *os << c.what; }

class SiteFilters : public ::testing::TestWithParam<FilterCase> {};

TEST_P(SiteFilters, WeakCallsBecomeMissingAndSitesDropByTheProgenysCalls) {
  const FilterCase& c = GetParam();
  std::vector<SampleCall> calls{Call("0/0"), Call("1/1")};
  for (const std::string& p : c.progeny) calls.push_back(Call(p));
  // Plant 1 is thinly covered, plant 2 poorly called, plant 3 has no values at all.
  const std::vector<CallSupport> support{{20, 50}, {20, 50}, {3, 50}, {10, 5}, {kUnknownDepth, -1}, {10, 50}};
  const SiteOutcome out = ImportSite({2, 7, 2}, c.filters, SampleRoles{{0, 1}, {2, 3, 4, 5}}, calls, support, 2);
  EXPECT_EQ(out.reason, c.reason);
  EXPECT_EQ(out.letters, c.letters);
  EXPECT_EQ(out.calls.low_depth, c.low_depth);
  EXPECT_EQ(out.calls.low_quality, c.low_quality);
}

const std::vector<std::string> kFour{"0/0", "0/1", "1/1", "0/1"}, kRare{"0/0", "0/1", "0/0", "0/0"};
INSTANTIATE_TEST_SUITE_P(
    Thresholds, SiteFilters,
    ::testing::Values(FilterCase{"none", {}, kFour, DropReason::kKept, "AHBH", 0, 0},
                      FilterCase{"depth", {5, 0, 1.0, 0}, kFour, DropReason::kKept, "XHBH", 1, 0},
                      FilterCase{"depth_and_quality", {5, 20, 1.0, 0}, kFour, DropReason::kKept, "XXBH", 1, 1},
                      FilterCase{"parent_below_depth", {25, 0, 1.0, 0}, kFour, DropReason::kParentMissing, "", 0, 0},
                      // Two of four missing: a share of 0.5 is kept at 0.5 and dropped below it.
                      FilterCase{"missing_at_limit", {5, 20, 0.5, 0}, kFour, DropReason::kKept, "XXBH", 1, 1},
                      FilterCase{"missing_above", {5, 20, 0.49, 0}, kFour, DropReason::kTooManyMissing, "", 0, 0},
                      // Alleles 0 0 0 1 0 0 0 0: the minor allele is 1/8 of the progeny's.
                      FilterCase{"maf_kept", {0, 0, 1.0, 0.125}, kRare, DropReason::kKept, "AHAA", 0, 0},
                      FilterCase{"maf_too_rare", {0, 0, 1.0, 0.13}, kRare, DropReason::kLowMinorAllele, "", 0, 0},
                      FilterCase{"one_class", {}, {"0/0", "./.", "0/0", "0/0"}, DropReason::kNoSegregation, "", 0, 0}),
    [](const auto& info) { return std::string(info.param.what); });

TEST(ImportDesignChoice, TheExtensionTheParentsAndThePopulationChooseTheDesign) {
  struct Case {
    const char *out, *pop;
    int parents, tool, type;  // tool 0: refused with a reason
  };
  for (const Case& c : std::vector<Case>{
           {"a.map", "F2", 2, 2, 7},       {"a.MAP", "ril", 2, 2, 4},        {"a.map", "F1RIL", 2, 2, 4},
           {"a.map", "13", 2, 2, 13},      {"a.map", "", 2, 0, 0},           {"a.map", "F2", 4, 0, 0},
           {"a.map", "Clonal F1", 2, 0, 0}, {"a.cdm", "", 2, 20, 1},         {"a.cdm", "", 4, 20, 2},
           {"a.cdm", "double cross", 4, 20, 2}, {"a.cdm", "Clonal F1", 4, 0, 0}, {"a.cdm", "", 3, 0, 0},
           {"a.plm", "RIL", 4, 30, 2},     {"a.plm", "8PDH", 8, 30, 3},      {"a.plm", "DH", 8, 30, 3},
           {"a.plm", "4PDH", 8, 0, 0},     {"a.plm", "", 4, 0, 0},           {"a.txt", "F2", 2, 0, 0}}) {
    std::string why;
    const auto design = ChooseImportDesign(c.out, c.pop, c.parents, why);
    SCOPED_TRACE(std::string(c.out) + " " + c.pop + " " + std::to_string(c.parents));
    ASSERT_EQ(design.has_value(), c.tool != 0) << why;
    EXPECT_EQ(why.empty(), c.tool != 0);
    if (design) {
      EXPECT_EQ(std::vector<int>({design->tool_code, design->population_type, design->parents}),
                std::vector<int>({c.tool, c.type, c.parents}));
    }
  }
}

TEST(MarkerNames, NamesAreOneUniqueItemOfAtMost35Characters) {
  MarkerNamer namer;
  const std::string long_id(40, 'q');
  const std::vector<std::pair<std::string, std::string>> given{
      {"rs1", "rs1"}, {".", "chr1_5"}, {"rs1", "rs1_2"}, {"a b,c", "a_b_c"}, {"!x", "_x"},
      {long_id, std::string(35, 'q')}, {long_id, std::string(33, 'q') + "_2"}};
  for (const auto& [id, name] : given) EXPECT_EQ(namer.Name(id, "chr1", 5), name);
  EXPECT_EQ(namer.from_id, 6u);
  EXPECT_EQ(namer.from_position, 1u);
  EXPECT_EQ(namer.changed, 5u);
}

}  // namespace
}  // namespace gae
