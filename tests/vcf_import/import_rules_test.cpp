// The import's rules that no file format changes: the breeder's filters on one F2 site, the
// design an output name and the parents choose, and the names markers get.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "vcf_import/import_design.h"
#include "vcf_import/marker_names.h"
#include "vcf_import/site_import.h"

namespace gae {
namespace {

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
