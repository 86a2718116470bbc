// Whole variant files in: small files stated by hand for each design, written as plain VCF,
// bgzipped VCF and BCF by htslib's writer; and populations bred locus by locus, whose written
// input file must carry exactly the genotypes of the plants. Every file is read back by the map
// tools' own reader, independently of the import.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <vector>

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "prep/locus_table.h"
#include "prep/map_input_text.h"
#include "support/bred_data_sets.h"
#include "support/breeder.h"
#include "support/temp_dir.h"
#include "support/variant_files.h"
#include "vcf_import/import_files.h"
#include "vcf_import/vcf_import.h"
#include "vocabulary/message_code.h"

namespace gae {
namespace {

using testing::VariantFormat;

struct ReadBack {
  int code = -1;
  std::vector<std::string> names;  // trimmed
  std::vector<int32_t> categories;
  std::vector<std::string> letters;  // per marker
};

// Imports `file` into `out` and reads the placed file with the map tool's reader.
ReadBack ImportAndRead(const std::string& file, const std::string& out, const ImportDesign& design,
                       const std::vector<std::string>& parents, VcfImport* imported = nullptr) {
  VcfImport local;
  VcfImport& data = imported != nullptr ? *imported : local;
  std::string error;
  EXPECT_TRUE(ReadVcfImport(VcfImportRequest{file, design, parents, {}, 0, nullptr}, data, error)) << error;
  const PlacedImport placed = PlaceImportedFiles(out, ReaderToolCode(design), data.record, data.loci);
  EXPECT_TRUE(placed.Ok()) << placed.error << " reader code " << placed.reader_code;
  ReadBack back;
  InputFile in;
  if (!in.Open(out)) return back;
  MapToolInput input;
  ReadMapToolInput(in, ReaderToolCode(design), input);
  back.code = MessageCode();
  MessageCode() = 0;
  const auto& m = input.markers;
  for (std::size_t k = 0; k < m.names.size(); ++k) {
    back.names.push_back(m.names[k].substr(0, m.names[k].find_last_not_of(' ') + 1));
    back.categories.push_back(m.categories[k]);
    back.letters.emplace_back(m.types.begin() + static_cast<std::ptrdiff_t>(k * m.population_size),
                              m.types.begin() + static_cast<std::ptrdiff_t>((k + 1) * m.population_size));
  }
  return back;
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
  std::vector<std::string> chromosomes;
  std::vector<double> positions;
};

std::string Rec(const std::string& chr, long pos, const std::string& id, const std::string& alt,
                const std::vector<std::string>& gts) {
  return testing::VcfRecord(chr, pos, id, "A", alt, "GT", gts);
}

std::vector<HandFile> HandFiles() {
  return {
      // A is the first parent's allele; a parent pair alike drops the site.
      {"F2", {2, 7, 2}, {"P1", "P2", "o1", "o2", "o3"}, 2,
       Rec("chr1", 100, "m1", "C", {"0/0", "1/1", "0/0", "0/1", "1/1"}) +
           Rec("chr1", 200, ".", "C,G", {"2/2", "0/0", "0/2", "./.", "2/2"}) +
           Rec("chr1", 300, "m3", "C", {"0/0", "0/0", "0/0", "0/1", "1/1"}) +
           Rec("chr2", 50, "m4", "C", {"1/1", "0/0", "1/1", "0|1", "0/0"}),
       {"m1", "chr1_200", "m4"}, {1, 1, 1}, {"AHB", "HXA", "AHB"}, {"chr1", "chr1", "chr2"}, {100, 200, 50}},
      // AC AD BC BD are A..D, XC XD E F, AA AB BB I J K.
      {"clonal F1", {20, 1, 2}, {"F", "M", "o1", "o2", "o3", "o4"}, 2,
       Rec("chr1", 10, "abcd", "C,G,T", {"0/1", "2/3", "0/2", "1/3", "0/3", "1/2"}) +
           Rec("chr1", 20, "aaxab", "C", {"0/0", "0/1", "0/0", "0/1", "0/1", "./."}) +
           Rec("chr1", 30, "abxab", "C", {"0/1", "0/1", "0/0", "0/1", "1/1", "0/1"}) +
           Rec("chr1", 40, "aaxbb", "C", {"0/0", "1/1", "0/1", "0/1", "0/1", "0/1"}),
       {"abcd", "aaxab", "abxab"}, {1, 2, 4}, {"ADBC", "EFFX", "IJKJ"}, {"chr1", "chr1", "chr1"}, {10, 20, 30}},
      {"double cross", {20, 2, 4}, {"G1", "G2", "G3", "G4", "o1", "o2", "o3"}, 4,
       Rec("chr3", 7, "adbc", "C", {"0/0", "1/1", "1/1", "0/0", "0/0", "0/1", "1/1"}) +
           Rec("chr3", 9, "ab_ac", "C,G", {"0/0", "1/1", "0/0", "2/2", "0/1", "1/2", "0/0"}),
       {"adbc", "ab_ac"}, {5, 1}, {"IJK", "CDA"}, {"chr3", "chr3"}, {7, 9}},
      {"4PRIL", {30, 2, 4}, {"F1", "F2", "F3", "F4", "l1", "l2", "l3", "l4"}, 4,
       Rec("chr1", 5, "abab", "C", {"0/0", "1/1", "0/0", "1/1", "0/0", "1/1", "0/1", "1/1"}) +
           Rec("chr1", 6, "abcc", "C,G", {"0/0", "1/1", "2/2", "2/2", "2/2", "0/0", "1/1", "2/2"}),
       {"abab", "abcc"}, {1212, 1233}, {"ABXB", "CABC"}, {"chr1", "chr1"}, {5, 6}},
  };
}

class HandWrittenFiles : public testing::InTempDir,
                         public ::testing::WithParamInterface<std::tuple<int, VariantFormat>> {};

TEST_P(HandWrittenFiles, EachFormatGivesTheCodesWorkedOutByHand) {
  const HandFile f = HandFiles()[static_cast<std::size_t>(std::get<0>(GetParam()))];
  SCOPED_TRACE(f.what);
  const std::string file = std::string("calls") + testing::VariantExtension(std::get<1>(GetParam()));
  testing::WriteVariantFile(file, testing::VcfHeader(f.samples) + f.records, std::get<1>(GetParam()));
  const std::string out = f.design.tool_code == 20 ? "out.cdm" : f.design.tool_code == 30 ? "out.plm" : "out.map";
  const std::vector<std::string> parents(f.samples.begin(), f.samples.begin() + f.parents);
  const ReadBack back = ImportAndRead(file, out, f.design, parents);
  EXPECT_EQ(back.code, 0);
  EXPECT_EQ(back.names, f.names);
  EXPECT_EQ(back.categories, f.categories);
  EXPECT_EQ(back.letters, f.letters);
  const auto loci = ReadLocusTableBeside(out);
  ASSERT_TRUE(loci.has_value());
  ASSERT_EQ(loci->rows.size(), f.names.size());
  for (std::size_t k = 0; k < f.names.size(); ++k) {
    EXPECT_EQ(loci->rows[k].marker, f.names[k]);
    EXPECT_EQ(loci->rows[k].chromosome, f.chromosomes[k]);
    EXPECT_EQ(loci->rows[k].position, f.positions[k]);
  }
}

std::string CaseName(const char* what, VariantFormat format) {
  std::string name;
  for (char c : std::string(what) + testing::VariantExtension(format))
    name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(DesignsAndFormats, HandWrittenFiles,
                         ::testing::Combine(::testing::Range(0, 4),
                                            ::testing::Values(VariantFormat::kPlain, VariantFormat::kBgzip,
                                                              VariantFormat::kBcf)),
                         [](const auto& info) {
                           return CaseName(HandFiles()[static_cast<std::size_t>(std::get<0>(info.param))].what,
                                           std::get<1>(info.param));
                         });

// A bred population written as calls: founders' alleles per site, some sites uninformative,
// some with more than two alleles, a share of the progeny's calls missing.
struct BredSite {
  std::vector<int> allele;  // of founders 0..3
  int category = 0;         // expected: 0 dropped
};

std::string Genotype(const std::vector<int>& allele, int f1, int f2) {
  return std::to_string(allele[static_cast<std::size_t>(f1)]) + "/" + std::to_string(allele[static_cast<std::size_t>(f2)]);
}

std::string Alternatives(const std::vector<int>& allele) {
  const int top = *std::max_element(allele.begin(), allele.end());
  static const char* kAlts[] = {"C", "C", "C,G", "C,G,T"};
  return kAlts[top];
}

struct BredCase {
  const char* what;
  ImportDesign design;
  std::vector<BredSite> kinds;  // taken in turn along the chromosome
};

class BredPopulations : public testing::InTempDir,
                        public ::testing::WithParamInterface<std::tuple<int, VariantFormat>> {};

std::vector<BredCase> BredCases() {
  // Bi-parental founders 0 (P1) and 1 (P2); clonal parents carry 0, 1 and 2, 3.
  const std::vector<BredSite> biparental{{{0, 1}, 1}, {{2, 1}, 1}, {{0, 0}, 0}, {{1, 0}, 1}, {{1, 1}, 0}};
  const std::vector<BredSite> clonal{{{0, 1, 2, 3}, 1}, {{0, 0, 0, 1}, 2}, {{0, 1, 1, 1}, 3}, {{0, 0, 1, 1}, 0},
                                     {{0, 1, 0, 1}, 4}, {{0, 1, 0, 2}, 1}, {{1, 1, 1, 1}, 0}};
  return {{"F2", {2, 7, 2}, biparental}, {"backcross", {2, 1, 2}, biparental}, {"clonal F1", {20, 1, 2}, clonal}};
}

TEST_P(BredPopulations, MarkersCarryThePlantsGenotypesAndOnlyUninformativeSitesDrop) {
  const BredCase c = BredCases()[static_cast<std::size_t>(std::get<0>(GetParam()))];
  SCOPED_TRACE(c.what);
  const bool clonal = c.design.tool_code == 20;
  const int loci = 35, progeny = 80;
  std::vector<double> positions;
  for (int k = 0; k < loci; ++k) positions.push_back(3.0 * k);
  testing::Breeder breeder = testing::Breeder::AtPositions(positions, 20261125 + std::get<0>(GetParam()));
  std::vector<testing::Plant> plants;
  for (int i = 0; i < progeny; ++i)
    plants.push_back(clonal ? breeder.ClonalProgeny() : breeder.Biparental(c.design.population_type));
  std::mt19937_64 rng(7);
  std::bernoulli_distribution missing(0.1);

  std::vector<std::string> samples{"mother", "father"};
  for (int i = 0; i < progeny; ++i) samples.push_back("plant" + std::to_string(i + 1));
  std::string records;
  std::vector<std::string> expected_names, expected_letters;
  std::vector<int32_t> expected_categories;
  for (int k = 0; k < loci; ++k) {
    const BredSite& site = c.kinds[static_cast<std::size_t>(k) % c.kinds.size()];
    std::vector<std::string> gts{clonal ? Genotype(site.allele, 0, 1) : Genotype(site.allele, 0, 0),
                                 clonal ? Genotype(site.allele, 2, 3) : Genotype(site.allele, 1, 1)};
    std::string letters;
    for (const testing::Plant& p : plants) {
      const bool gone = missing(rng);
      gts.push_back(gone ? "./." : Genotype(site.allele, p.first[static_cast<std::size_t>(k)], p.second[static_cast<std::size_t>(k)]));
      if (!clonal) {
        letters += gone ? 'X' : testing::BiparentalLetter(p, k);
      } else {
        const testing::SimulatedClonalMarker m{"", 0, site.category, 0, 0};
        const std::string type = gone ? "XX" : testing::ClonalType(m, p.first[static_cast<std::size_t>(k)], p.second[static_cast<std::size_t>(k)] - 2);
        letters += type;
      }
    }
    std::string name(1, 's');
    name += std::to_string(k);
    records += Rec("chr1", 1000 * (k + 1), name, Alternatives(site.allele), gts);
    if (site.category == 0) continue;
    expected_names.push_back(name);
    expected_categories.push_back(site.category);
    expected_letters.push_back(letters);
  }
  const std::string file = std::string("bred") + testing::VariantExtension(std::get<1>(GetParam()));
  testing::WriteVariantFile(file, testing::VcfHeader(samples) + records, std::get<1>(GetParam()));
  VcfImport imported;
  const ReadBack back = ImportAndRead(file, clonal ? "bred.cdm" : "bred.map", c.design, {"mother", "father"}, &imported);
  EXPECT_EQ(back.code, 0);
  EXPECT_EQ(back.names, expected_names);
  EXPECT_EQ(back.categories, expected_categories);
  ASSERT_EQ(back.letters.size(), expected_letters.size());
  for (std::size_t m = 0; m < expected_letters.size(); ++m) {
    std::string shown;
    for (char l : back.letters[m]) shown += clonal ? ClonalToken(l) : std::string(1, l);
    EXPECT_EQ(shown, expected_letters[m]) << expected_names[m];
  }
  EXPECT_EQ(imported.tally.sites, static_cast<uint64_t>(loci));
  EXPECT_EQ(imported.tally.dropped[static_cast<std::size_t>(DropReason::kParentsUninformative)],
            loci - expected_names.size());
  EXPECT_EQ(imported.tally.calls.not_shown, 0u);
}

INSTANTIATE_TEST_SUITE_P(BreederAndFormats, BredPopulations,
                         ::testing::Combine(::testing::Range(0, 3),
                                            ::testing::Values(VariantFormat::kPlain, VariantFormat::kBgzip)),
                         [](const auto& info) {
                           return CaseName(BredCases()[static_cast<std::size_t>(std::get<0>(info.param))].what,
                                           std::get<1>(info.param));
                         });

}  // namespace
}  // namespace gae
