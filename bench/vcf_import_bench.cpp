// Importing variant calls: 100,000 sites by 300 samples (two parents, 298 F2 plants) of a
// bgzipped VCF with GT, DP and GQ, to a checked MAP input file. Target: within 20 s on two
// cores. The file is made once per process (about 16 MB compressed).
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>

#include <htslib/bgzf.h>

#include "bench_support.h"
#include "vcf_import/import_files.h"
#include "vcf_import/vcf_import.h"

namespace {

std::string BenchFile(int sites, int samples) {
  const std::string path = "/tmp/gae_vcf_bench_" + std::to_string(::getpid()) + ".vcf.gz";
  BGZF* out = bgzf_open(path.c_str(), "w");
  std::string text =
      "##fileformat=VCFv4.2\n##contig=<ID=chr1>\n"
      "##FORMAT=<ID=GT,Number=1,Type=String,Description=\"Genotype\">\n"
      "##FORMAT=<ID=DP,Number=1,Type=Integer,Description=\"Depth\">\n"
      "##FORMAT=<ID=GQ,Number=1,Type=Integer,Description=\"Genotype quality\">\n"
      "#CHROM\tPOS\tID\tREF\tALT\tQUAL\tFILTER\tINFO\tFORMAT";
  for (int s = 0; s < samples; ++s) text += "\ts" + std::to_string(s);
  text += "\n";
  std::mt19937_64 rng(11);
  static const char* kCalls[] = {"0/0:12:50", "0/1:9:40", "0/1:4:40", "1/1:15:60", "./.:0:0", "0/0:8:12"};
  std::discrete_distribution<int> pick({24, 24, 2, 24, 3, 3});
  for (int k = 0; k < sites; ++k) {
    text += "chr1\t" + std::to_string(k + 1) + "\t.\tA\tC\t.\tPASS\t.\tGT:DP:GQ\t0/0:20:99\t1/1:20:99";
    for (int s = 2; s < samples; ++s) text += std::string("\t") + kCalls[pick(rng)];
    text += "\n";
    if (text.size() > (1u << 20) && bgzf_write(out, text.data(), text.size()) >= 0) text.clear();
  }
  if (bgzf_write(out, text.data(), text.size()) < 0) std::fprintf(stderr, "cannot write %s\n", path.c_str());
  bgzf_close(out);
  return path;
}

void BM_ImportVcf(benchmark::State& state) {
  const int sites = static_cast<int>(state.range(0)), samples = 300;
  const std::string file = BenchFile(sites, samples);
  const std::string out = "/tmp/gae_vcf_bench_" + std::to_string(::getpid()) + ".map";
  gae::VcfImportRequest request{file, {2, 7, 2}, {"s0", "s1"}, {5, 20, 0.2, 0.05}, 1, nullptr};
  std::size_t markers = 0;
  for (auto _ : state) {
    gae::VcfImport imported;
    std::string error;
    if (!gae::ReadVcfImport(request, imported, error)) state.SkipWithError(error.c_str());
    const gae::bench::QuietStdout quiet;
    const gae::PlacedImport placed = gae::PlaceImportedFiles(out, 104, imported.record, imported.loci);
    if (!placed.Ok()) state.SkipWithError("the written file was refused");
    markers = imported.record.names.size();
  }
  state.counters["markers"] = static_cast<double>(markers);
  state.counters["sites_per_s"] = benchmark::Counter(static_cast<double>(sites), benchmark::Counter::kIsRate);
  std::remove(file.c_str());
  std::remove(out.c_str());
  std::remove((out.substr(0, out.size() - 4) + ".loci.tsv").c_str());
}
BENCHMARK(BM_ImportVcf)->Arg(100000)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace
