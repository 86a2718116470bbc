// Variant files for the import tests, written by htslib's own writer: the test states a VCF as
// text, and the file on disk is that text as plain VCF, bgzipped VCF or BCF.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gae::testing {

enum class VariantFormat { kPlain, kBgzip, kBcf };
const char* VariantExtension(VariantFormat format);  // ".vcf", ".vcf.gz", ".bcf"

// Writes `vcf_text` (a whole VCF: meta lines, #CHROM line, records) to `path` in `format`.
void WriteVariantFile(const std::string& path, const std::string& vcf_text, VariantFormat format);

// The meta lines (GT, DP, GQ and the contigs chr1..chr3) and the #CHROM line of `samples`.
std::string VcfHeader(const std::vector<std::string>& samples);

// One record: CHROM POS ID REF ALT . PASS . FORMAT and one field per sample.
std::string VcfRecord(const std::string& chromosome, long position, const std::string& id, const std::string& ref,
                      const std::string& alt, const std::string& format, const std::vector<std::string>& fields);

}  // namespace gae::testing

namespace gae::testing {

// A population bred with the test breeder and written as calls of the parents "mother" and
// "father" and the plants. Sites take their kinds in turn: informative ones with two, three or
// four alleles, and uninformative ones (parents alike; in a clonal F1 also both parents
// homozygous). A share of the plants' calls is missing.
struct BredCalls {
  std::string vcf;
  int sites = 0;
  std::vector<std::string> names;   // the informative sites, in order
  std::vector<int> categories;      // 1, or the clonal category
  std::vector<std::string> types;   // per informative site, each plant's type: A H B X, or AC .. XX
};
// `population_type`: 1 to 20 bi-parental, 0 a clonal F1.
BredCalls BredPopulationCalls(int population_type, int loci, int plants, double missing, uint64_t seed);

}  // namespace gae::testing
