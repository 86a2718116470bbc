// How a site's calls become a marker, case by case, with the codes worked out by hand from the
// parents' alleles and the population's classes.
#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <string>
#include <vector>

#include "vcf_import/import_design.h"
#include "vcf_import/marker_names.h"
#include "vcf_import/site_import.h"

namespace gae {
namespace {

// "0/1", "1|0", "./.", "2" (haploid) as a call.
SampleCall Call(const std::string& gt) {
  SampleCall c;
  if (gt.find('.') != std::string::npos) return c;
  c.first = static_cast<int16_t>(std::stoi(gt));
  const std::size_t cut = gt.find_first_of("/|");
  c.second = cut == std::string::npos ? c.first : static_cast<int16_t>(std::stoi(gt.substr(cut + 1)));
  return c;
}

struct SiteCase {
  const char* what;
  ImportDesign design;
  std::vector<std::string> parents, progeny;
  int alleles;
  DropReason reason;
  int32_t category;
  std::string letters;
  uint64_t not_shown;
};

void PrintTo(const SiteCase& c, std::ostream* os) { *os << c.what; }

const ImportDesign kF2{2, 7, 2}, kBackcrossP1{2, 1, 2}, kBackcrossP2{2, 2, 2}, kRil{2, 4, 2};
const ImportDesign kClonalF1{20, 1, 2}, kDoubleCross{20, 2, 4}, k4PRil{30, 2, 4}, k8PDh{30, 3, 8};

class SiteCodes : public ::testing::TestWithParam<SiteCase> {};

TEST_P(SiteCodes, ParentsGiveTheCategoryAndProgenyTheLetters) {
  const SiteCase& c = GetParam();
  std::vector<SampleCall> calls;
  SampleRoles roles;
  for (const std::string& p : c.parents) roles.parents.push_back(static_cast<int>(calls.size())), calls.push_back(Call(p));
  for (const std::string& p : c.progeny) roles.progeny.push_back(static_cast<int>(calls.size())), calls.push_back(Call(p));
  const SiteOutcome out = ImportSite(c.design, CallFilters{}, roles, calls, {}, c.alleles);
  EXPECT_EQ(out.reason, c.reason);
  if (c.reason != DropReason::kKept) return;
  EXPECT_EQ(out.category, c.category);
  EXPECT_EQ(out.letters, c.letters);
  EXPECT_EQ(out.calls.not_shown, c.not_shown);
}

using R = DropReason;
INSTANTIATE_TEST_SUITE_P(
    ByDesign, SiteCodes,
    ::testing::Values(
        SiteCase{"F2", kF2, {"0/0", "1/1"}, {"0/0", "0/1", "1|0", "1/1", "./."}, 2, R::kKept, 1, "AHHBX", 0},
        // A is the first parent's allele, whichever it is; a third allele is no class of the cross.
        SiteCase{"F2 on alleles 2 and 0", kF2, {"2/2", "0/0"}, {"2/2", "0/2", "0/0", "1/2"}, 3, R::kKept, 1, "AHBX", 1},
        SiteCase{"backcross to P1: no B", kBackcrossP1, {"0/0", "1/1"}, {"0/0", "0/1", "1/1"}, 2, R::kKept, 1, "AHX", 1},
        SiteCase{"backcross to P2: no A", kBackcrossP2, {"0/0", "1/1"}, {"0/0", "0/1", "1/1"}, 2, R::kKept, 1, "XHB", 1},
        SiteCase{"RIL: no H; a haploid call", kRil, {"0/0", "1/1"}, {"0/0", "0/1", "1/1", "1"}, 2, R::kKept, 1, "AXBB", 1},
        SiteCase{"heterozygous parent", kF2, {"0/1", "1/1"}, {"0/0", "1/1"}, 2, R::kParentsUninformative, 0, "", 0},
        SiteCase{"parents alike", kF2, {"1/1", "1/1"}, {"0/0", "1/1"}, 2, R::kParentsUninformative, 0, "", 0},
        SiteCase{"parent missing", kF2, {"0/0", "./."}, {"0/0", "1/1"}, 2, R::kParentMissing, 0, "", 0},
        SiteCase{"progeny of one class", kF2, {"0/0", "1/1"}, {"0/0", "0/0", "./."}, 2, R::kNoSegregation, 0, "", 0},
        // Clonal F1: AC AD BC BD are A B C D; XC XD are E F; AX BX G H; AA AB BB I J K.
        SiteCase{"clonal ABCD, four alleles", kClonalF1, {"0/1", "2/3"}, {"0/2", "0/3", "1/2", "1/3", "0/1"}, 4,
                 R::kKept, 1, "ABCDX", 1},
        SiteCase{"clonal ABCD, three alleles", kClonalF1, {"0/1", "0/2"}, {"0/0", "0/2", "0/1", "1/2"}, 3, R::kKept, 1,
                 "ABCD", 0},
        SiteCase{"clonal AB=CD, written 1/0", kClonalF1, {"1/0", "0/1"}, {"0/0", "0/1", "1/1"}, 2, R::kKept, 4, "IJK", 0},
        SiteCase{"clonal A=B (AA x AB)", kClonalF1, {"0/0", "0/1"}, {"0/0", "0/1", "1/1"}, 2, R::kKept, 2, "EFX", 1},
        SiteCase{"clonal C=D (AB x AA)", kClonalF1, {"0/1", "1/1"}, {"0/1", "1/1"}, 2, R::kKept, 3, "GH", 0},
        SiteCase{"clonal parents both homozygous", kClonalF1, {"0/0", "1/1"}, {"0/1"}, 2, R::kParentsUninformative, 0,
                 "", 0},
        // Double cross (P1 x P2) x (P3 x P4): A, B, C, D are the grandparents' alleles.
        SiteCase{"double cross A=CB=D", kDoubleCross, {"0/0", "1/1", "0/0", "1/1"}, {"0/0", "0/1", "1/1"}, 2,
                 R::kKept, 4, "IJK", 0},
        SiteCase{"double cross A=DB=C", kDoubleCross, {"0/0", "1/1", "1/1", "0/0"}, {"0/0", "0/1", "1/1"}, 2,
                 R::kKept, 5, "IJK", 0},
        SiteCase{"double cross ABCD with A=C", kDoubleCross, {"0/0", "1/1", "0/0", "2/2"}, {"0/0", "0/2", "0/1", "1/2"},
                 3, R::kKept, 1, "ABCD", 0},
        SiteCase{"double cross A=B", kDoubleCross, {"0/0", "0/0", "1/1", "2/2"}, {"0/1", "0/2"}, 3, R::kKept, 2, "EF", 0},
        SiteCase{"double cross heterozygous grandparent", kDoubleCross, {"0/1", "1/1", "0/0", "1/1"}, {"0/1", "0/0"},
                 2, R::kParentsUninformative, 0, "", 0},
        // Founder patterns: each founder's digit is the first founder with its allele.
        SiteCase{"4PRIL ABAD", k4PRil, {"0/0", "1/1", "0/0", "2/2"}, {"0/0", "1/1", "2/2", "0/1", "3/3"}, 4, R::kKept,
                 1214, "ABDXX", 2},
        SiteCase{"4PRIL founders alike", k4PRil, {"0/0", "0/0", "0/0", "0/0"}, {"0/0", "1/1"}, 2,
                 R::kParentsUninformative, 0, "", 0},
        SiteCase{"8PDH ABBAEEAB", k8PDh, {"0/0", "1/1", "1/1", "0/0", "2/2", "2/2", "0/0", "1/1"}, {"2/2", "1/1", "0/0"},
                 3, R::kKept, 12215512, "EBA", 0}),
    [](const auto& info) {
      std::string name;
      for (char c : std::string(info.param.what)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
      return name;
    });

// Filters on an F2 site, parents 0/0 and 1/1, four progeny.
struct FilterCase {
  const char* what;
  CallFilters filters;
  std::vector<CallSupport> support;  // parents first
  std::vector<std::string> progeny;
  DropReason reason;
  std::string letters;
  uint64_t low_depth, low_quality;
};

class SiteFilters : public ::testing::TestWithParam<FilterCase> {};

TEST_P(SiteFilters, CallsBelowTheThresholdsAreMissingAndSitesAreDroppedByShare) {
  const FilterCase& c = GetParam();
  std::vector<SampleCall> calls{Call("0/0"), Call("1/1")};
  SampleRoles roles{{0, 1}, {}};
  for (const std::string& p : c.progeny) roles.progeny.push_back(static_cast<int>(calls.size())), calls.push_back(Call(p));
  const SiteOutcome out = ImportSite(kF2, c.filters, roles, calls, c.support, 2);
  EXPECT_EQ(out.reason, c.reason);
  EXPECT_EQ(out.letters, c.letters);
  EXPECT_EQ(out.calls.low_depth, c.low_depth);
  EXPECT_EQ(out.calls.low_quality, c.low_quality);
}

void PrintTo(const FilterCase& c, std::ostream* os) { *os << c.what; }

const std::vector<std::string> kFour{"0/0", "0/1", "1/1", "0/1"};
const std::vector<CallSupport> kDepths{{20, 50}, {20, 50}, {3, 50}, {10, 5}, {kUnknownDepth, -1}, {10, 50}};

INSTANTIATE_TEST_SUITE_P(
    Thresholds, SiteFilters,
    ::testing::Values(
        FilterCase{"none", {}, kDepths, kFour, DropReason::kKept, "AHBH", 0, 0},
        FilterCase{"depth", {5, 0, 1.0, 0}, kDepths, kFour, DropReason::kKept, "XHBH", 1, 0},
        FilterCase{"depth and quality", {5, 20, 1.0, 0}, kDepths, kFour, DropReason::kKept, "XXBH", 1, 1},
        FilterCase{"parent below the depth", {25, 0, 1.0, 0}, kDepths, kFour, DropReason::kParentMissing, "", 0, 0},
        // Two of four missing: a share of 0.5 is kept at 0.5 and dropped below it.
        FilterCase{"missing share at the limit", {5, 20, 0.5, 0}, kDepths, kFour, DropReason::kKept, "XXBH", 1, 1},
        FilterCase{"missing share above", {5, 20, 0.49, 0}, kDepths, kFour, DropReason::kTooManyMissing, "", 0, 0},
        // Alleles 0 0 0 0 0 1 0 0: the minor allele is 1/8 of the progeny's.
        FilterCase{"minor allele kept", {0, 0, 1.0, 0.125}, {}, {"0/0", "0/1", "0/0", "0/0"}, DropReason::kKept, "AHAA",
                   0, 0},
        FilterCase{"minor allele too rare", {0, 0, 1.0, 0.13}, {}, {"0/0", "0/1", "0/0", "0/0"},
                   DropReason::kLowMinorAllele, "", 0, 0}),
    [](const auto& info) {
      std::string name;
      for (char c : std::string(info.param.what)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
      return name;
    });

TEST(ImportDesignChoice, TheExtensionTheParentsAndThePopulationChooseTheDesign) {
  struct Case {
    const char* out;
    const char* pop;
    int parents;
    int tool, type;  // tool 0: refused
  };
  for (const Case& c : std::vector<Case>{{"a.map", "F2", 2, 2, 7},
                                         {"a.MAP", "ril", 2, 2, 4},
                                         {"a.map", "F1RIL", 2, 2, 4},
                                         {"a.map", "13", 2, 2, 13},
                                         {"a.map", "", 2, 0, 0},
                                         {"a.map", "F2", 4, 0, 0},
                                         {"a.map", "Clonal F1", 2, 0, 0},
                                         {"a.cdm", "", 2, 20, 1},
                                         {"a.cdm", "", 4, 20, 2},
                                         {"a.cdm", "double cross", 4, 20, 2},
                                         {"a.cdm", "Clonal F1", 4, 0, 0},
                                         {"a.cdm", "", 3, 0, 0},
                                         {"a.plm", "RIL", 4, 30, 2},
                                         {"a.plm", "8PDH", 8, 30, 3},
                                         {"a.plm", "DH", 8, 30, 3},
                                         {"a.plm", "4PDH", 8, 0, 0},
                                         {"a.plm", "", 4, 0, 0},
                                         {"a.txt", "F2", 2, 0, 0}}) {
    std::string why;
    const auto design = ChooseImportDesign(c.out, c.pop, c.parents, why);
    SCOPED_TRACE(std::string(c.out) + " " + c.pop + " " + std::to_string(c.parents));
    ASSERT_EQ(design.has_value(), c.tool != 0) << why;
    if (!design) {
      EXPECT_FALSE(why.empty());
      continue;
    }
    EXPECT_EQ(design->tool_code, c.tool);
    EXPECT_EQ(design->population_type, c.type);
    EXPECT_EQ(design->parents, c.parents);
  }
}

TEST(MarkerNames, NamesAreOneUniqueItemOfAtMost35Characters) {
  MarkerNamer namer;
  EXPECT_EQ(namer.Name("rs1", "chr1", 5), "rs1");
  EXPECT_EQ(namer.Name(".", "chr1", 5), "chr1_5");
  EXPECT_EQ(namer.Name("rs1", "chr1", 9), "rs1_2");
  EXPECT_EQ(namer.Name("a b,c", "chr1", 9), "a_b_c");
  EXPECT_EQ(namer.Name("!x", "chr1", 9), "_x");
  const std::string long_id(40, 'q');
  EXPECT_EQ(namer.Name(long_id, "chr1", 1), std::string(35, 'q'));
  EXPECT_EQ(namer.Name(long_id, "chr1", 2), std::string(33, 'q') + "_2");
  EXPECT_EQ(namer.from_id, 6u);
  EXPECT_EQ(namer.from_position, 1u);
  EXPECT_EQ(namer.changed, 5u);
}

}  // namespace
}  // namespace gae
