#include "support/variant_files.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <htslib/hts.h>
#include <htslib/vcf.h>

#include "support/bred_data_sets.h"
#include "support/breeder.h"

namespace gae::testing {

const char* VariantExtension(VariantFormat format) {
  switch (format) {
    case VariantFormat::kBgzip: return ".vcf.gz";
    case VariantFormat::kBcf: return ".bcf";
    default: return ".vcf";
  }
}

void WriteVariantFile(const std::string& path, const std::string& vcf_text, VariantFormat format) {
  const std::string source = path + ".source.vcf";
  std::ofstream(source, std::ios::binary) << vcf_text;
  htsFile* in = hts_open(source.c_str(), "r");
  const char* mode = format == VariantFormat::kBgzip ? "wz" : format == VariantFormat::kBcf ? "wb" : "w";
  htsFile* out = hts_open(path.c_str(), mode);
  bcf_hdr_t* header = in != nullptr ? bcf_hdr_read(in) : nullptr;
  if (out == nullptr || header == nullptr || bcf_hdr_write(out, header) != 0)
    throw std::runtime_error("cannot write " + path);
  bcf1_t* record = bcf_init();
  while (bcf_read(in, header, record) == 0)
    if (bcf_write(out, header, record) != 0) throw std::runtime_error("cannot write a record of " + path);
  bcf_destroy(record);
  bcf_hdr_destroy(header);
  hts_close(in);
  if (hts_close(out) != 0) throw std::runtime_error("cannot close " + path);
  std::remove(source.c_str());
}

std::string VcfHeader(const std::vector<std::string>& samples) {
  std::string text =
      "##fileformat=VCFv4.2\n"
      "##contig=<ID=chr1,length=100000000>\n##contig=<ID=chr2,length=100000000>\n"
      "##contig=<ID=chr3,length=100000000>\n"
      "##FORMAT=<ID=GT,Number=1,Type=String,Description=\"Genotype\">\n"
      "##FORMAT=<ID=DP,Number=1,Type=Integer,Description=\"Read depth\">\n"
      "##FORMAT=<ID=GQ,Number=1,Type=Integer,Description=\"Genotype quality\">\n"
      "#CHROM\tPOS\tID\tREF\tALT\tQUAL\tFILTER\tINFO\tFORMAT";
  for (const std::string& s : samples) text += "\t" + s;
  return text + "\n";
}

std::string VcfRecord(const std::string& chromosome, long position, const std::string& id, const std::string& ref,
                      const std::string& alt, const std::string& format, const std::vector<std::string>& fields) {
  std::string text = chromosome + "\t" + std::to_string(position) + "\t" + id + "\t" + ref + "\t" + alt +
                     "\t.\tPASS\t.\t" + format;
  for (const std::string& f : fields) text += "\t" + f;
  return text + "\n";
}

}  // namespace gae::testing

namespace gae::testing {

namespace {

struct SiteKind {
  std::vector<int> allele;  // of founders 0, 1 (bi-parental) or 0..3 (clonal: 0, 1 the mother's)
  int category;             // 0: uninformative
};

std::string Genotype(const std::vector<int>& allele, int f1, int f2) {
  return std::to_string(allele[static_cast<std::size_t>(f1)]) + "/" + std::to_string(allele[static_cast<std::size_t>(f2)]);
}

}  // namespace

BredCalls BredPopulationCalls(int population_type, int loci, int plants, double missing, uint64_t seed) {
  const bool clonal = population_type == 0;
  const std::vector<SiteKind> kinds =
      clonal ? std::vector<SiteKind>{{{0, 1, 2, 3}, 1}, {{0, 0, 0, 1}, 2}, {{0, 1, 1, 1}, 3}, {{0, 0, 1, 1}, 0},
                                     {{0, 1, 0, 1}, 4}, {{0, 1, 0, 2}, 1}, {{1, 1, 1, 1}, 0}}
             : std::vector<SiteKind>{{{0, 1}, 1}, {{2, 1}, 1}, {{0, 0}, 0}, {{1, 0}, 1}, {{1, 1}, 0}};
  std::vector<double> positions;
  for (int k = 0; k < loci; ++k) positions.push_back(3.0 * k);
  Breeder breeder = Breeder::AtPositions(positions, seed);
  std::vector<Plant> progeny;
  std::vector<std::string> samples{"mother", "father"};
  for (int i = 0; i < plants; ++i) {
    progeny.push_back(clonal ? breeder.ClonalProgeny() : breeder.Biparental(population_type));
    samples.push_back("plant" + std::to_string(i + 1));
  }
  BredCalls calls;
  calls.vcf = VcfHeader(samples);
  calls.sites = loci;
  for (int k = 0; k < loci; ++k) {
    const SiteKind& kind = kinds[static_cast<std::size_t>(k) % kinds.size()];
    std::vector<std::string> fields{clonal ? Genotype(kind.allele, 0, 1) : Genotype(kind.allele, 0, 0),
                                    clonal ? Genotype(kind.allele, 2, 3) : Genotype(kind.allele, 1, 1)};
    std::string types;
    for (const Plant& p : progeny) {
      const int f = p.first[static_cast<std::size_t>(k)], m = p.second[static_cast<std::size_t>(k)];
      const bool gone = breeder.Uniform() < missing;
      fields.push_back(gone ? "./." : Genotype(kind.allele, f, m));
      if (clonal) types += gone ? "XX" : ClonalType(SimulatedClonalMarker{"", 0, kind.category, 0, 0}, f, m - 2);
      else types += gone ? 'X' : BiparentalLetter(p, k);
    }
    static const char* kAlternatives[] = {"C", "C", "C,G", "C,G,T"};
    std::string name(1, 's');
    name += std::to_string(k + 1);
    calls.vcf += VcfRecord("chr1", 1000L * (k + 1), name, "A",
                           kAlternatives[*std::max_element(kind.allele.begin(), kind.allele.end())], "GT", fields);
    if (kind.category == 0) continue;
    calls.names.push_back(name);
    calls.categories.push_back(kind.category);
    calls.types.push_back(types);
  }
  return calls;
}

}  // namespace gae::testing
