// `gaengine import vcf` as a breeder meets it: a bred population's calls in, a file that
// `gaengine map` runs on directly; each bad file refused with exit 1, its problem named on
// standard error and no file left behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/command_run.h"
#include "support/temp_dir.h"
#include "support/variant_files.h"

namespace gae {
namespace {

using ::testing::HasSubstr;
using testing::CommandRun;
using testing::GaengineErrApart;
using testing::VariantFormat;

class ImportVcfCommand : public testing::InTempDir {};

TEST_F(ImportVcfCommand, TheWrittenFileIsMappedAsItStands) {
  // 30 sites of 60 plants, of which 12 uninformative (parents alike).
  testing::WriteVariantFile("f2.vcf.gz", testing::BredPopulationCalls(7, 30, 60, 0.05, 99).vcf, VariantFormat::kBgzip);
  CommandRun r = GaengineErrApart("import vcf f2.vcf.gz -o f2.map --parents mother,father --pop F2");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("18 markers, 60 individuals -> f2.map (F2 (MAP type 7))"));
  EXPECT_THAT(r.out, HasSubstr("sites read: 30\n"));
  EXPECT_THAT(r.out, HasSubstr("parents not informative: 12\n"));
  EXPECT_THAT(r.out, HasSubstr("18 from ID"));
  EXPECT_TRUE(testing::FileExists("f2.loci.tsv"));
  r = GaengineErrApart("map f2.map");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  const auto rows = testing::SumMapRows("f2.sum");
  EXPECT_EQ(rows.size(), 18u);
  // A clonal F1's categories, multi-allelic ABCD among them, go to the clonal tool as they stand.
  testing::WriteVariantFile("cf1.bcf", testing::BredPopulationCalls(0, 28, 60, 0.05, 5).vcf, VariantFormat::kBcf);
  r = GaengineErrApart("import vcf cf1.bcf -o cf1.cdm --parents mother,father");
  ASSERT_EQ(r.exit_code, 0) << r.err;
  EXPECT_THAT(r.out, HasSubstr("20 markers, 60 individuals -> cf1.cdm (Clonal F1 (CDM type 1))"));
  r = GaengineErrApart("map cf1.cdm");
  EXPECT_EQ(r.exit_code, 0) << r.err;
  EXPECT_TRUE(testing::FileExists("cf1.sumf"));
}

struct BadInput {
  const char* what;
  std::string arguments;
  std::string message;
};

TEST_F(ImportVcfCommand, EachBadInputIsNamedAndLeavesNoFile) {
  const std::string header = testing::VcfHeader({"P1", "P2", "o1"});
  const std::string good = testing::VcfRecord("chr1", 10, "m1", "A", "C", "GT", {"0/0", "1/1", "0/1"});
  testing::WriteVariantFile("good.vcf", header + good, VariantFormat::kPlain);
  std::string no_gt = header + good;
  no_gt.replace(no_gt.find("##FORMAT=<ID=GT"), no_gt.find('\n', no_gt.find("##FORMAT=<ID=GT")) + 1 - no_gt.find("##FORMAT=<ID=GT"), "");
  for (std::size_t at; (at = no_gt.find("\tGT\t")) != std::string::npos;) no_gt.replace(at, 4, "\tDP\t");
  testing::WriteText("nogt.vcf", no_gt);
  testing::WriteText("columns.vcf", header + good + "chr1\t20\tm2\tA\tC\t.\tPASS\t.\tGT\t0/0\t1/1\n");
  // Several bgzip blocks, the file cut in the middle of one.
  std::string many = testing::VcfHeader({"P1", "P2", "o1", "o2"});
  for (int k = 1; k <= 6000; ++k)
    many += testing::VcfRecord("chr1", 10 * k, ".", "A", "C", "GT", {"0/0", "1/1", "0/1", k % 2 ? "0/0" : "1/1"});
  testing::WriteVariantFile("whole.vcf.gz", many, VariantFormat::kBgzip);
  const std::string whole = testing::ReadText("whole.vcf.gz");
  testing::WriteText("cut.vcf.gz", whole.substr(0, whole.size() / 2 + 7));

  for (const BadInput& c : std::vector<BadInput>{
           {"parent not a sample", "good.vcf --parents P1,Q9",
            "good.vcf: parent 'Q9' is not among the samples; the 3 samples are P1, P2, o1"},
           {"no GT field", "nogt.vcf --parents P1,P2", "nogt.vcf: no GT field"},
           {"truncated bgzip block", "cut.vcf.gz --parents P1,P2", "truncated bgzip block"},
           {"sample columns", "columns.vcf --parents P1,P2",
            "site 2 (chr1:20), line 10: the number of sample columns differs from the 3 samples of the header line"}}) {
    SCOPED_TRACE(c.what);
    const CommandRun r = GaengineErrApart("import vcf " + c.arguments + " --pop F2 -o out.map");
    EXPECT_EQ(r.exit_code, 1);
    EXPECT_THAT(r.err, HasSubstr(c.message));
    for (const char* left : {"out.map", "out.loci.tsv", "out.map.part", "out.loci.tsv.part"})
      EXPECT_FALSE(testing::FileExists(left)) << left;
  }
  // The whole file, for contrast, is fine.
  EXPECT_EQ(GaengineErrApart("import vcf whole.vcf.gz --parents P1,P2 --pop F2 -o out.map").exit_code, 0);
}

}  // namespace
}  // namespace gae
