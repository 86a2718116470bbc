// The one place that reads variant files, through htslib.
#include "vcf_import/vcf_import.h"

#include <sys/stat.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <htslib/bgzf.h>
#include <htslib/hfile.h>
#include <htslib/hts.h>
#include <htslib/hts_log.h>
#include <htslib/vcf.h>

#include "vcf_import/marker_names.h"

namespace gae {

namespace {

// htslib prints its own diagnostics on standard error; the import says what went wrong in its
// own words, so they are silenced while it reads.
class QuietHtslib {
 public:
  QuietHtslib() : saved_(hts_get_log_level()) { hts_set_log_level(HTS_LOG_OFF); }
  ~QuietHtslib() { hts_set_log_level(saved_); }
  QuietHtslib(const QuietHtslib&) = delete;
  QuietHtslib& operator=(const QuietHtslib&) = delete;

 private:
  htsLogLevel saved_;
};

struct FileCloser {
  void operator()(htsFile* fp) const { hts_close(fp); }
};
struct HeaderFree {
  void operator()(bcf_hdr_t* h) const { bcf_hdr_destroy(h); }
};
struct RecordFree {
  void operator()(bcf1_t* r) const { bcf_destroy(r); }
};

// Buffers that htslib grows as it needs.
struct FormatBuffers {
  int32_t* gt = nullptr;
  int32_t* depth = nullptr;
  void* quality = nullptr;
  int n_gt = 0, n_depth = 0, n_quality = 0;
  ~FormatBuffers() {
    std::free(gt);
    std::free(depth);
    std::free(quality);
  }
};

class VcfSource {
 public:
  VcfSource(const VcfImportRequest& request, std::string& error) : request_(request), error_(error) {}

  bool Open();
  bool ReadSites(VcfImport& out);

 private:
  bool Fail(const std::string& what) {
    error_ = request_.path + ": " + what;
    return false;
  }
  std::string Site(const bcf1_t* rec, uint64_t number) const;
  bool Truncated() const { return fp_->is_bgzf && fp_->fp.bgzf->errcode != 0; }
  bool FindParents();
  bool ReadCalls(bcf1_t* rec, uint64_t number);
  void ReadSupport(bcf1_t* rec);
  void Progress(uint64_t sites) const;

  const VcfImportRequest& request_;
  std::string& error_;
  std::unique_ptr<htsFile, FileCloser> fp_;
  std::unique_ptr<bcf_hdr_t, HeaderFree> header_;
  SampleRoles roles_;
  int samples_ = 0;
  bool has_depth_ = false, has_quality_ = false, quality_is_real_ = false;
  double file_size_ = 0;
  FormatBuffers buffers_;
  std::vector<SampleCall> calls_;
  std::vector<CallSupport> support_;
};

std::string SampleList(const bcf_hdr_t* h) {
  const int n = bcf_hdr_nsamples(h);
  if (n == 0) return "the file has no samples";
  std::string list = "the " + std::to_string(n) + " samples are";
  for (int s = 0; s < n && s < 40; ++s) list += (s == 0 ? " " : ", ") + std::string(h->samples[s]);
  if (n > 40) list += ", ... (" + std::to_string(n - 40) + " more)";
  return list;
}

bool VcfSource::Open() {
  fp_.reset(hts_open(request_.path.c_str(), "r"));
  if (!fp_) return Fail(std::string("cannot be opened (") + std::strerror(errno) + ")");
  if (fp_->format.category != variant_data) {
    // Too little left of a compressed file to see what it holds.
    if (fp_->format.compression == bgzf || fp_->format.compression == gzip)
      return Fail("the compressed file is cut short (a truncated bgzip block) or holds no VCF or BCF");
    return Fail("is not a VCF or BCF file");
  }
  if (request_.threads > 0) hts_set_threads(fp_.get(), request_.threads);
  header_.reset(bcf_hdr_read(fp_.get()));
  if (!header_) {
    if (Truncated()) return Fail("the compressed file is cut short (a truncated bgzip block) within the header");
    return Fail("the header cannot be read (it must end with the #CHROM line)");
  }
  samples_ = bcf_hdr_nsamples(header_.get());
  const bcf_hdr_t* h = header_.get();
  if (!bcf_hdr_idinfo_exists(h, BCF_HL_FMT, bcf_hdr_id2int(h, BCF_DT_ID, "GT")))
    return Fail("no GT field: the header declares no FORMAT GT, so the file holds no genotype calls");
  const int dp = bcf_hdr_id2int(h, BCF_DT_ID, "DP"), gq = bcf_hdr_id2int(h, BCF_DT_ID, "GQ");
  has_depth_ = bcf_hdr_idinfo_exists(h, BCF_HL_FMT, dp) && bcf_hdr_id2type(h, BCF_HL_FMT, dp) == BCF_HT_INT;
  has_quality_ = bcf_hdr_idinfo_exists(h, BCF_HL_FMT, gq) &&
                 (bcf_hdr_id2type(h, BCF_HL_FMT, gq) == BCF_HT_INT || bcf_hdr_id2type(h, BCF_HL_FMT, gq) == BCF_HT_REAL);
  quality_is_real_ = has_quality_ && bcf_hdr_id2type(h, BCF_HL_FMT, gq) == BCF_HT_REAL;
  if ((request_.filters.min_depth > 0 && !has_depth_) || (request_.filters.min_quality > 0 && !has_quality_)) {
    // A filter asked for but with nothing to act on would pass every call unseen.
    return Fail(std::string("--") + (request_.filters.min_depth > 0 && !has_depth_ ? "min-dp" : "min-gq") +
                " is given but the header declares no FORMAT " +
                (request_.filters.min_depth > 0 && !has_depth_ ? "DP (Integer)" : "GQ"));
  }
  struct stat info {};
  if (stat(request_.path.c_str(), &info) == 0) file_size_ = static_cast<double>(info.st_size);
  return FindParents();
}

bool VcfSource::FindParents() {
  std::vector<bool> is_parent(static_cast<std::size_t>(samples_), false);
  for (const std::string& name : request_.parents) {
    const int s = bcf_hdr_id2int(header_.get(), BCF_DT_SAMPLE, name.c_str());
    if (s < 0) return Fail("parent '" + name + "' is not among the samples; " + SampleList(header_.get()));
    if (is_parent[static_cast<std::size_t>(s)]) return Fail("parent '" + name + "' is named twice in --parents");
    is_parent[static_cast<std::size_t>(s)] = true;
    roles_.parents.push_back(s);
  }
  for (int s = 0; s < samples_; ++s)
    if (!is_parent[static_cast<std::size_t>(s)]) roles_.progeny.push_back(s);
  if (roles_.progeny.empty()) return Fail("no progeny: every sample is a parent");
  calls_.resize(static_cast<std::size_t>(samples_));
  return true;
}

std::string VcfSource::Site(const bcf1_t* rec, uint64_t number) const {
  std::string where = "site " + std::to_string(number);
  if (rec->rid >= 0 && rec->rid < header_->n[BCF_DT_CTG])
    where += " (" + std::string(bcf_hdr_id2name(header_.get(), rec->rid)) + ":" + std::to_string(rec->pos + 1) + ")";
  if (!fp_->format.compression && fp_->format.format == vcf) where += ", line " + std::to_string(fp_->lineno);
  return where;
}

bool VcfSource::ReadCalls(bcf1_t* rec, uint64_t number) {
  const int n = bcf_get_genotypes(header_.get(), rec, &buffers_.gt, &buffers_.n_gt);
  if (n <= 0 || samples_ == 0) return Fail(Site(rec, number) + " has no GT field");
  if (n % samples_ != 0) return Fail(Site(rec, number) + ": GT values do not match the samples of the header line");
  const int ploidy = n / samples_;
  for (int s = 0; s < samples_; ++s) {
    const int32_t* g = buffers_.gt + static_cast<std::ptrdiff_t>(s) * ploidy;
    SampleCall call;
    const bool haploid = ploidy == 1 || g[1] == bcf_int32_vector_end;
    const bool polyploid = ploidy > 2 && g[2] != bcf_int32_vector_end;
    const auto usable = [](int32_t v) {
      return v != bcf_int32_vector_end && !bcf_gt_is_missing(v) && bcf_gt_allele(v) <= INT16_MAX;
    };
    if (!polyploid && usable(g[0]) && (haploid || usable(g[1]))) {
      call.first = static_cast<int16_t>(bcf_gt_allele(g[0]));
      call.second = haploid ? call.first : static_cast<int16_t>(bcf_gt_allele(g[1]));
    }
    calls_[static_cast<std::size_t>(s)] = call;
  }
  return true;
}

// Depth and genotype quality, where the site has them; unknown values pass the filters.
void VcfSource::ReadSupport(bcf1_t* rec) {
  support_.assign(static_cast<std::size_t>(samples_), CallSupport{});
  if (request_.filters.min_depth > 0 && has_depth_ &&
      bcf_get_format_int32(header_.get(), rec, "DP", &buffers_.depth, &buffers_.n_depth) == samples_) {
    for (int s = 0; s < samples_; ++s) {
      const int32_t d = buffers_.depth[s];
      if (d != bcf_int32_missing && d != bcf_int32_vector_end) support_[static_cast<std::size_t>(s)].depth = d;
    }
  }
  if (request_.filters.min_quality > 0 && has_quality_) {
    const int type = quality_is_real_ ? BCF_HT_REAL : BCF_HT_INT;
    if (bcf_get_format_values(header_.get(), rec, "GQ", &buffers_.quality, &buffers_.n_quality, type) == samples_) {
      for (int s = 0; s < samples_; ++s) {
        float q = -1.0f;
        if (quality_is_real_) {
          const float v = static_cast<const float*>(buffers_.quality)[s];
          if (!bcf_float_is_missing(v) && !bcf_float_is_vector_end(v) && std::isfinite(v)) q = v;
        } else {
          const int32_t v = static_cast<const int32_t*>(buffers_.quality)[s];
          if (v != bcf_int32_missing && v != bcf_int32_vector_end) q = static_cast<float>(v);
        }
        support_[static_cast<std::size_t>(s)].quality = q;
      }
    }
  }
}

void VcfSource::Progress(uint64_t sites) const {
  if (!request_.progress || sites % 2048 != 0 || file_size_ <= 0) return;
  hFILE* raw = fp_->is_bgzf ? fp_->fp.bgzf->fp : fp_->fp.hfile;
  if (raw != nullptr) request_.progress(std::min(1.0, static_cast<double>(htell(raw)) / file_size_));
}

bool VcfSource::ReadSites(VcfImport& out) {
  MapInputRecord& record = out.record;
  record.tool_code = request_.design.tool_code;
  record.population_type = request_.design.population_type;
  record.population_size = static_cast<int32_t>(roles_.progeny.size());
  ImportTally& tally = out.tally;
  tally.parents = static_cast<int>(roles_.parents.size());
  tally.progeny = static_cast<int>(roles_.progeny.size());
  MarkerNamer namer;
  std::unique_ptr<bcf1_t, RecordFree> rec(bcf_init());
  const bool filtered = request_.filters.min_depth > 0 || request_.filters.min_quality > 0;
  for (uint64_t number = 1;; ++number) {
    const int status = bcf_read(fp_.get(), header_.get(), rec.get());
    if (Truncated()) return Fail("the compressed file is cut short (a truncated bgzip block) after " +
                                 std::to_string(number - 1) + " sites");
    if (status == -1) break;
    if (status < -1 || (rec->errcode & ~(BCF_ERR_CTG_UNDEF | BCF_ERR_TAG_UNDEF)) != 0) {
      if (rec->errcode & BCF_ERR_NCOLS)
        return Fail(Site(rec.get(), number) + ": the number of sample columns differs from the " +
                    std::to_string(samples_) + " samples of the header line");
      return Fail(Site(rec.get(), number) + " cannot be read");
    }
    if (!ReadCalls(rec.get(), number)) return false;
    if (filtered) ReadSupport(rec.get());
    const int alleles = rec->n_allele;
    SiteOutcome site = ImportSite(request_.design, request_.filters, roles_, calls_,
                                        filtered ? std::span<const CallSupport>(support_) : std::span<const CallSupport>(),
                                        alleles);
    ++tally.sites;
    if (alleles > 2) ++tally.multi_allelic;
    Progress(number);
    if (site.reason != DropReason::kKept) {
      ++tally.dropped[static_cast<std::size_t>(site.reason)];
      continue;
    }
    ++tally.kept;
    if (alleles > 2) ++tally.multi_allelic_kept;
    tally.calls.Add(site.calls);
    bcf_unpack(rec.get(), BCF_UN_STR);
    const std::string chromosome = bcf_hdr_id2name(header_.get(), rec->rid);
    const std::string name = namer.Name(rec->d.id != nullptr ? rec->d.id : ".", chromosome, rec->pos + 1);
    record.names.push_back(name);
    record.categories.push_back(site.category);
    record.letters.push_back(std::move(site.letters));
    out.loci.rows.push_back(LocusRow{name, chromosome, static_cast<double>(rec->pos + 1)});
  }
  if (fp_->format.compression == bgzf && bgzf_check_EOF(fp_->fp.bgzf) == 0)
    return Fail("the compressed file is cut short (a truncated bgzip block: its end-of-file block is missing)");
  record.anchors.assign(record.names.size(), 0);
  tally.names_from_id = namer.from_id;
  tally.names_from_position = namer.from_position;
  tally.names_changed = namer.changed;
  if (tally.kept == 0) return Fail("no site is kept (" + std::to_string(tally.sites) + " read), so there is no marker to write");
  return true;
}

}  // namespace

bool ReadVcfImport(const VcfImportRequest& request, VcfImport& out, std::string& error) {
  const QuietHtslib quiet;
  out = VcfImport{};
  VcfSource source(request, error);
  return source.Open() && source.ReadSites(out);
}

}  // namespace gae
