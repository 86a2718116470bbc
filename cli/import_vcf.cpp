// gaengine import vcf FILE -o OUT.map|OUT.cdm|OUT.plm --parents P1,P2[,...] [--pop TYPE]: the
// import is the library's; the command takes the options, shows progress at a terminal and
// prints the report.
#include "import_vcf.h"

#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "library_output.h"
#include "user_errors.h"
#include "vcf_import/import_files.h"
#include "vcf_import/vcf_import.h"

namespace gaecli {

namespace {

struct VcfOptions {
  std::string file, out, pop;
  std::vector<std::string> parents;
  gae::CallFilters filters;
  int mapping_function = 1;
};

void ShowShare(double share) {
  const int width = 40, filled = static_cast<int>(share * width + 0.5);
  std::fprintf(stderr, "\rsites [%s%s] %5.1f%%", std::string(filled, '#').c_str(),
               std::string(width - filled, ' ').c_str(), 100.0 * share);
  std::fflush(stderr);
}

int RunImportVcf(const VcfOptions& o) {
  if (const std::string problem = InputNameProblem(o.out); !problem.empty()) {
    std::fprintf(stderr, "-o: %s\n", problem.c_str());
    return 2;
  }
  std::string why;
  const auto design = gae::ChooseImportDesign(o.out, o.pop, static_cast<int>(o.parents.size()), why);
  if (!design) {
    std::fprintf(stderr, "%s\n", why.c_str());
    return 2;
  }
  gae::VcfImportRequest request{o.file, *design, o.parents, o.filters, 1, nullptr};
  const bool terminal = ::isatty(STDERR_FILENO) != 0;
  if (terminal) request.progress = ShowShare;
  gae::VcfImport imported;
  const bool read = gae::ReadVcfImport(request, imported, why);
  if (terminal) std::fprintf(stderr, "\r%s\r", std::string(56, ' ').c_str());
  if (!read) {
    std::fprintf(stderr, "%s\n", why.c_str());
    return 1;
  }
  imported.record.mapping_function = o.mapping_function;
  gae::PlacedImport placed;
  {
    const LibraryOutput quiet;
    placed = gae::PlaceImportedFiles(o.out, gae::ReaderToolCode(*design), imported.record, imported.loci);
  }
  if (!placed.error.empty()) {
    std::fprintf(stderr, "%s%s\n", placed.error.c_str(),
                 FolderProblem(o.out).empty() ? "" : (": " + FolderProblem(o.out)).c_str());
    return 1;
  }
  if (placed.reader_code != 0) {
    ExplainRefusal(o.out, gae::ReaderToolCode(*design), placed.reader_code);
    return 1;
  }
  std::printf("%s: %zu markers, %d individuals -> %s (%s), loci in %s\n", o.file.c_str(),
              imported.record.names.size(), imported.record.population_size, o.out.c_str(),
              gae::DesignText(*design).c_str(), gae::LocusTablePath(o.out).c_str());
  std::printf("%s", gae::ImportReportText(imported.tally).c_str());
  return 0;
}

}  // namespace

void RegisterImportVcf(CLI::App& import, int& exit_code) {
  auto* vcf = import.add_subcommand(
      "vcf", "Variant calls (VCF, bgzipped VCF or BCF) to a MAP, CDM or PLM input file, by the output's extension");
  static VcfOptions o;
  vcf->add_option("file", o.file, "VCF, VCF.gz or BCF file")->required();
  vcf->add_option("-o,--output", o.out, "Input file to write: OUT.map (two inbred parents), OUT.cdm (clonal F1: "
                                        "two parents; double cross: four grandparents) or OUT.plm (four or eight founders)")
      ->required();
  vcf->add_option("--parents", o.parents, "Sample names of the parents, comma-separated, in the design's order")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->required();
  vcf->add_option("--pop", o.pop,
                  "Population type: MAP 1 to 20 or a name (F2, RIL, P1BC1F1, ...); PLM DH or RIL (4PDH, 8PRIL, ...); "
                  "CDM needs none");
  vcf->add_option("--min-dp", o.filters.min_depth, "A call of a smaller depth (FORMAT DP) is missing")
      ->check(CLI::NonNegativeNumber);
  vcf->add_option("--min-gq", o.filters.min_quality, "A call of a smaller genotype quality (FORMAT GQ) is missing")
      ->check(CLI::NonNegativeNumber);
  vcf->add_option("--max-missing", o.filters.max_missing,
                  "Drop a site whose share of missing progeny calls is larger (0 to 1)")
      ->check(CLI::Range(0.0, 1.0))
      ->capture_default_str();
  vcf->add_option("--min-maf", o.filters.min_maf, "Drop a site whose minor allele is rarer among the progeny (0 to 0.5)")
      ->check(CLI::Range(0.0, 0.5));
  vcf->add_option("--mapping-function", o.mapping_function, "1 Kosambi, 2 Haldane, 3 Morgan")
      ->check(CLI::Range(1, 3))
      ->capture_default_str();
  vcf->callback([&exit_code] { exit_code = RunImportVcf(o); });
}

}  // namespace gaecli
