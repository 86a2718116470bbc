#include "support/variant_files.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <htslib/hts.h>
#include <htslib/vcf.h>

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
