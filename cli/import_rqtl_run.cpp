// gaengine import rqtl FILE.csv -o OUT.map: an R/qtl csv cross file becomes a MAP input file,
// with its chromosomes (<stem>.loci.tsv) and its individuals and traits (<stem>.traits.tsv)
// beside it. The data are checked against the declared population type first, and the written
// file is read back by the library's own MAP reader before the command says "ok"; a file the
// reader refuses is removed.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

#include "frame/tool_profile.h"
#include "import_rqtl.h"
#include "input/biparental_calls.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "input/marker_refusal.h"
#include "library_output.h"
#include "map_gates.h"
#include "prep/allele_switch.h"
#include "prep/design_check.h"
#include "prep/locus_table.h"
#include "prep/map_input_text.h"
#include "prep/trait_table.h"
#include "report/phenotype_rows.h"
#include "user_errors.h"
#include "vocabulary/message_code.h"
#include "vocabulary/population.h"
#include "report/text_file.h"

namespace gaecli {

namespace {

struct ImportOptions {
  std::string file, out, pop;
  std::vector<std::string> genotypes{"A", "H", "B", "D", "C"};
  std::vector<std::string> switch_alleles;
  bool anchors = false, keep_x = false, drop_bad = false, force = false, genotypes_given = false;
  int mapping_function = 1;
};

std::string DefaultOutput(const std::string& file) {
  const std::size_t dot = file.rfind('.');
  return (dot == std::string::npos || file.find('/', dot) != std::string::npos ? file : file.substr(0, dot)) + ".map";
}

// Keeps the markers for which `keep(m)` holds.
template <typename Keep>
void KeepMarkers(RqtlCross& cross, Keep keep) {
  RqtlCross kept = cross;
  kept.names.clear(), kept.chromosomes.clear(), kept.positions.clear(), kept.letters.clear();
  for (std::size_t m = 0; m < cross.names.size(); ++m) {
    if (!keep(m)) continue;
    kept.names.push_back(cross.names[m]);
    kept.chromosomes.push_back(cross.chromosomes[m]);
    kept.positions.push_back(cross.positions[m]);
    kept.letters.push_back(cross.letters[m]);
  }
  cross = std::move(kept);
}

bool IsX(const std::string& chromosome) { return chromosome == "X" || chromosome == "x"; }

// The X chromosome segregates by sex, which no population type here models.
void LeaveOutX(RqtlCross& cross, bool keep_x) {
  const auto on_x = std::count_if(cross.chromosomes.begin(), cross.chromosomes.end(), IsX);
  if (on_x == 0) return;
  if (keep_x) {
    std::printf("  chromosome X kept (--keep-x): its %ld markers are mapped like the autosomes\n", static_cast<long>(on_x));
    return;
  }
  KeepMarkers(cross, [&](std::size_t m) { return !IsX(cross.chromosomes[m]); });
  std::printf("  chromosome X left out (%ld markers): it segregates by sex, which the population types here do not "
              "model; --keep-x keeps it\n", static_cast<long>(on_x));
}

bool SwitchNamed(RqtlCross& cross, int type, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const auto at = std::find(cross.names.begin(), cross.names.end(), name);
    if (at == cross.names.end()) {
      std::fprintf(stderr, "--switch-alleles: no marker named %s in %s\n", name.c_str(), "the file");
      return false;
    }
    gae::SwitchAlleles(type, cross.letters[static_cast<std::size_t>(at - cross.names.begin())]);
  }
  if (!names.empty()) std::printf("  alleles switched in %s\n", NameList(names).c_str());
  return true;
}

// Markers the MAP reader would refuse, and those of one class, which no pair can place: named,
// and dropped with --drop-bad-markers. False when the import must stop.
bool HandleBadMarkers(RqtlCross& cross, int type, bool drop, const std::string& file) {
  std::vector<std::string> refused, reasons, single;
  std::vector<bool> bad(cross.names.size(), false);
  for (std::size_t m = 0; m < cross.names.size(); ++m) {
    const std::string reason = gae::BiparentalRefusal(type, cross.letters[m]);
    if (!reason.empty()) {
      refused.push_back(cross.names[m]);
      reasons.push_back(cross.names[m] + ": " + reason);
      bad[m] = true;
    } else if (gae::SingleClass(type, cross.letters[m])) {
      single.push_back(cross.names[m]);
      bad[m] = drop;
    }
  }
  if (!refused.empty() && !drop) {
    std::fprintf(stderr, "%s: %zu marker%s cannot be read as %s:\n", file.c_str(), refused.size(),
                 refused.size() == 1 ? "" : "s", gae::TypeWithArticle(type).c_str());
    for (std::size_t k = 0; k < reasons.size() && k < 10; ++k) std::fprintf(stderr, "  %s\n", reasons[k].c_str());
    if (reasons.size() > 10) std::fprintf(stderr, "  and %zu more\n", reasons.size() - 10);
    std::fprintf(stderr, "  hint: --drop-bad-markers leaves them out (and markers of one genotype class)\n");
    return false;
  }
  if (drop && (!refused.empty() || !single.empty())) {
    KeepMarkers(cross, [&](std::size_t m) { return !bad[m]; });
    if (!refused.empty())
      std::printf("  dropped %zu marker%s the MAP reader refuses: %s\n", refused.size(), refused.size() == 1 ? "" : "s",
                  NameList(refused).c_str());
    if (!single.empty())
      std::printf("  dropped %zu marker%s of one genotype class: %s\n", single.size(), single.size() == 1 ? "" : "s",
                  NameList(single).c_str());
  } else if (!single.empty()) {
    std::printf("  %zu markers show one genotype class and cannot be placed: %s (--drop-bad-markers leaves them out)\n",
                single.size(), NameList(single).c_str());
  }
  return true;
}

// The written file as the library's MAP reader takes it: 0, or the status it refused with.
int ReadBack(const std::string& path) {
  const LibraryOutput quiet;
  gae::InputFile written;
  gae::MapToolInput input;
  if (written.Open(path)) gae::ReadMapToolInput(written, gae::ProfileOf(gae::MapTool::kMAP).tool_code, input);
  const int status = gae::MessageCode();
  gae::MessageCode() = 0;
  return status;
}

bool WriteSideTables(const RqtlCross& cross, const std::string& out) {
  gae::LocusTable loci;
  for (std::size_t m = 0; m < cross.names.size(); ++m)
    loci.rows.push_back({cross.names[m], cross.chromosomes[m], cross.positions[m]});
  if (!gae::WriteTextFile(gae::LocusTablePath(out), gae::LocusTableText(loci))) {
    std::fprintf(stderr, "%s: cannot be written\n", gae::LocusTablePath(out).c_str());
    return false;
  }
  gae::TraitTable traits;
  traits.ids = cross.ids;
  std::vector<std::string> skipped;
  for (std::size_t t = 0; t < cross.traits.size(); ++t) {
    if (!gae::NumericColumn(cross.traits[t])) {
      skipped.push_back(cross.trait_names[t]);
      continue;
    }
    traits.traits.push_back(cross.trait_names[t]);
    traits.values.push_back(cross.traits[t]);
  }
  if (!gae::WriteTextFile(gae::TraitTablePath(out), gae::TraitTableText(traits))) {
    std::fprintf(stderr, "%s: cannot be written\n", gae::TraitTablePath(out).c_str());
    return false;
  }
  std::printf("  chromosomes of the markers in %s; individuals and %zu traits in %s (the map run puts them in .bip "
              "and .met)\n", gae::LocusTablePath(out).c_str(), traits.traits.size(), gae::TraitTablePath(out).c_str());
  if (!skipped.empty())
    std::printf("  phenotypes that are not numbers left out of the traits: %s\n", NameList(skipped).c_str());
  return true;
}

int RunImport(ImportOptions o) {
  std::string pop_error;
  const int type = RqtlPopulationType(o.pop, pop_error);
  if (type == 0) {
    std::fprintf(stderr, "%s\n", pop_error.c_str());
    return 2;
  }
  if (o.out.empty()) o.out = DefaultOutput(o.file);
  if (const std::string problem = InputNameProblem(o.out); !problem.empty()) {
    std::fprintf(stderr, "-o: %s\n", problem.c_str());
    return 2;
  }
  std::ifstream in(o.file, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "%s: cannot be read\n", o.file.c_str());
    return 1;
  }
  std::stringstream text;
  text << in.rdbuf();
  RqtlCross cross;
  std::string error;
  const RqtlCodes codes{o.genotypes[0], o.genotypes[1], o.genotypes[2], o.genotypes[3], o.genotypes[4]};
  std::string codes_note;
  if (!ParseRqtlCsv(text.str(), o.file, codes, cross, error)) {
    // Codes left at their default: a file in R/qtl's own allele names is read by them.
    const std::optional<RqtlCodes> inferred = o.genotypes_given ? std::nullopt : InferRqtlCodes(text.str());
    std::string ignored;
    if (!inferred || !ParseRqtlCsv(text.str(), o.file, *inferred, cross, ignored)) {
      std::fprintf(stderr, "%s\n", error.c_str());
      return 1;
    }
    const RqtlCodes& c = *inferred;
    codes_note = "  genotype codes taken from the file: --genotypes " + c[0] + " " + c[1] + " " + c[2] + " \"" + c[3] +
                 "\" \"" + c[4] + "\"\n";
  }
  std::printf("%s: R/qtl %s file, separated by %s\n", o.file.c_str(), cross.rotated ? "csvr (rotated)" : "csv",
              cross.separator == '\t' ? "tabs" : cross.separator == ';' ? "semicolons" : "commas");
  std::printf("%s", codes_note.c_str());
  if (!cross.renamed.empty())
    std::printf("  names with blanks, which the MAP grammar splits, renamed: %s\n", NameList(cross.renamed, 5).c_str());
  LeaveOutX(cross, o.keep_x);
  if (!SwitchNamed(cross, type, o.switch_alleles)) return 2;
  const gae::DesignVerdict verdict = gae::CheckDesign(type, cross.letters);
  if (verdict.wrong_design && !o.force) {
    std::string types;
    for (std::size_t k = 0; k < verdict.better.size() && k < 3; ++k)
      types += (k ? " or " : "") + std::to_string(verdict.better[k]);
    std::fprintf(stderr, "%s: %s: --pop %s?\n  hint: --force imports it as %s all the same\n", o.file.c_str(),
                 gae::DesignMessage(verdict).c_str(), types.c_str(), gae::TypeWithArticle(type).c_str());
    return 1;
  }
  if (!HandleBadMarkers(cross, type, o.drop_bad, o.file)) return 1;
  if (cross.names.empty()) {
    std::fprintf(stderr, "%s: no marker left to write\n", o.file.c_str());
    return 1;
  }
  gae::MapInputRecord record;
  record.population_type = type;
  record.mapping_function = o.mapping_function;
  record.population_size = cross.individuals;
  record.names = cross.names;
  record.letters = cross.letters;
  record.categories.assign(cross.names.size(), 1);
  record.anchors = RqtlAnchors(cross, o.anchors && cross.has_map);
  if (!gae::WriteTextFile(o.out, gae::MapInputText(record))) {
    std::fprintf(stderr, "%s: cannot be written%s\n", o.out.c_str(),
                 FolderProblem(o.out).empty() ? "" : (": " + FolderProblem(o.out)).c_str());
    return 1;
  }
  // The MAP reader has the last word on what the population can show.
  if (const int status = ReadBack(o.out); status != 0) {
    ExplainRefusal(o.out, gae::ProfileOf(gae::MapTool::kMAP).tool_code, status);
    std::error_code ignored;
    std::filesystem::remove(o.out, ignored);
    std::fprintf(stderr, "  %s removed\n", o.out.c_str());
    return 1;
  }
  std::printf("%s: %zu markers, %d individuals -> %s (%s, type %d)\n", o.file.c_str(), cross.names.size(),
              cross.individuals, o.out.c_str(), std::string(gae::PopulationName(gae::kBiparentalDesign, type)).c_str(),
              type);
  if (verdict.wrong_design) std::printf("  imported as declared (--force): %s\n", gae::DesignMessage(verdict).c_str());
  if (!WriteSideTables(cross, o.out)) return 1;
  if (o.anchors && !cross.has_map) std::printf("  no map row in %s: no anchors written\n", o.file.c_str());
  if (o.anchors && cross.has_map) {
    std::printf("  anchors by chromosome:");
    const std::vector<int> anchors = RqtlAnchors(cross, true);
    for (std::size_t m = 0; m < anchors.size(); ++m)
      if (m == 0 || anchors[m] > anchors[m - 1]) std::printf(" %s=%d", cross.chromosomes[m].c_str(), anchors[m]);
    std::printf("\n  anchors tie each marker to its chromosome's group whatever its pairs say; the map run names a "
                "marker whose pairs point elsewhere. To drop them, import again without --anchors (or set the "
                "anchor section's values to 0)\n");
  }
  return 0;
}

}  // namespace

void RegisterRqtlImport(CLI::App& import, int& exit_code) {
  auto* rqtl = import.add_subcommand(
      "rqtl", "An R/qtl csv or csvr cross file (comma, semicolon or tab separated) to a MAP input file");
  static ImportOptions o;
  rqtl->add_option("file", o.file, "R/qtl csv or csvr file")->required();
  rqtl->add_option("-o,--output", o.out, "MAP input file to write (default: FILE with .map)");
  rqtl->add_option("--pop", o.pop,
                   "Population type: 1 to 20 or its name (F2, RIL, P1BC1F1, ...), or R/qtl's bc, f2, dh, riself")
      ->required();
  rqtl->add_option("--genotypes", o.genotypes,
                   "The file's five genotype codes, as R/qtl's genotypes option: AA, AB, BB, not BB, not AA "
                   "(blank- or comma-separated)")
      ->expected(5)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->capture_default_str();
  rqtl->add_flag("--anchors", o.anchors, "Anchor each marker to its chromosome (needs the file's map row)");
  rqtl->add_flag("--keep-x", o.keep_x, "Keep the X chromosome (left out by default: it segregates by sex)");
  rqtl->add_flag("--drop-bad-markers", o.drop_bad,
                 "Leave out the markers the MAP reader refuses (all missing, scores of two kinds, calls the "
                 "population cannot show) and those of one genotype class, and say which");
  rqtl->add_option("--switch-alleles", o.switch_alleles, "Markers to write with their alleles the other way round (NAME,NAME,...)")
      ->delimiter(',')
      ->allow_extra_args(false);
  rqtl->add_flag("--force", o.force, "Import even when the data fit another population type better");
  rqtl->add_option("--mapping-function", o.mapping_function, "1 Kosambi, 2 Haldane, 3 Morgan")
      ->check(CLI::Range(1, 3))
      ->capture_default_str();
  rqtl->callback([&exit_code, rqtl] {
    o.genotypes_given = rqtl->count("--genotypes") > 0;
    exit_code = RunImport(o);
  });
}

}  // namespace gaecli
