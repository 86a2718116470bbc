// gaengine map FILE by the library's map pipeline: the command parses the options into the
// pipeline's settings, runs it with the library's lines captured, and prints its record.
#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/map_state.h"
#include "frame/store_bus_guard.h"
#include "map_check.h"
#include "stage_progress.h"
#include "map_command.h"
#include "map_summary_extras.h"
#include "library_output.h"
#include "pipeline/map_pipeline.h"
#include "report/text_file.h"
#include "map_gates.h"
#include "run_guard.h"
#include "run_settings.h"
#include "trait_templates.h"
#include "tsv_export.h"
#include "twopoint/pair_store_writer.h"
#include "user_errors.h"
#include "vocabulary/population.h"
#include "vocabulary/run_log.h"

namespace gaecli {

namespace {

int32_t DesignOf(gae::MapTool tool) {
  if (tool == gae::MapTool::kCDM) return gae::kClonalDesign;
  return tool == gae::MapTool::kPLM ? gae::kFourWayDesign : gae::kBiparentalDesign;
}

gae::MapPipelineSettings SettingsOf(const MapOptions& o, const gae::ToolProfile& tool, float lod) {
  const gae::StageDefaults& d = tool.defaults;
  gae::MapPipelineSettings s;
  s.input_path = o.file;
  s.tool_code = tool.tool_code;
  if (!o.lod.empty() && o.lod != "auto") s.lod = lod;
  if (o.max_rf >= 0.0f) s.max_rf = o.max_rf;
  if (o.error_rate >= 0.0f) s.error_rate = o.error_rate;
  s.fallback_lod = gae::ProfileOf(gae::MapTool::kMAP).defaults.threshold;
  s.ordering.tour = {d.ordering_method, d.ordering_by, d.ordering_option, StartsOr(d.ordering_param1),
                     d.ordering_param2};
  s.ordering.ripple_by = d.rippling_by;
  s.ordering.window_size = d.window_size;
  s.ordering.around_frame = o.order == "frame";
  using Binning = gae::MapPipelineSettings::Binning;
  s.binning = o.no_bin ? Binning::kOff : o.bin_tolerance >= 0.0f ? Binning::kOn : Binning::kAuto;
  if (o.bin_tolerance >= 0.0f) s.bin_tolerance = o.bin_tolerance;
  s.threads = gae::PairStoreThreads();
  s.log = [](std::string_view line) { gae::ProcessRunLog().Write(line); };
  s.store_watch = &gae::StoreBusGuard();
  return s;
}

void PrintNames(const char* label, const std::vector<int32_t>& markers, const gae::MapPipelineRecord& r) {
  if (markers.empty()) return;
  std::printf("%s", label);
  const std::size_t shown = std::min<std::size_t>(markers.size(), 10);
  for (std::size_t k = 0; k < shown; ++k) std::printf(" %s", r.marker_names[static_cast<std::size_t>(markers[k] - 1)].c_str());
  std::printf("%s\n", shown < markers.size() ? " ..." : "");
}

void PrintGroups(const gae::MapPipelineRecord& r) {
  int linkage = 0, alone = 0;
  std::string singles;
  for (const gae::PipelineGroup& g : r.groups) {
    if (g.markers.size() > 1) ++linkage;
    else if (alone++ < 10) singles += " " + r.marker_names[static_cast<std::size_t>(g.markers.front() - 1)] + " (" + g.name + ")";
  }
  std::printf("  Linkage groups    %d\n", linkage);
  for (const gae::PipelineGroup& g : r.groups)
    if (g.markers.size() > 1)
      std::printf("    %-13s %5zu markers %9.1f cM\n", g.name.c_str(), g.markers.size(), static_cast<double>(g.LengthCm()));
  if (alone > 0)
    std::printf("  One-marker groups %d (linked to no other marker at this threshold):%s%s\n", alone, singles.c_str(),
                alone > 10 ? " ..." : "");
}

void PrintParentalMaps(const gae::MapPipelineRecord& r) {
  const char* parents[] = {"First parent", "Second parent"};
  for (std::size_t p = 0; p < r.parental_maps.size() && p < 2; ++p) {
    const gae::ParentalMap& map = r.parental_maps[p];
    std::printf("  %-17s %d markers, %.1f cM\n", parents[p], map.total_markers, static_cast<double>(map.total_cm));
    for (std::size_t g = 0; g < map.group_markers.size() && g < r.groups.size(); ++g)
      std::printf("    %-13s %5d markers %9.1f cM\n", r.groups[g].name.c_str(), map.group_markers[g],
                  static_cast<double>(map.group_lengths_cm[g]));
  }
}

void PrintSummary(const std::string& file, const gae::ToolProfile& tool, const gae::MapPipelineRecord& r,
                  const std::vector<std::string>& notes) {
  std::printf("\nSummary of %s\n", file.c_str());
  const std::string_view name = gae::PopulationName(DesignOf(tool.id), r.population_type);
  std::printf("  Population        %s (type %d)\n", name.empty() ? "?" : std::string(name).c_str(), r.population_type);
  std::printf("  Pipeline          gaengine's own: groups by LOD, order from the pairs, distances from %s\n",
              r.distances.empty() ? "(no group)" : r.distances.c_str());
  std::printf("  Mapping function  %s\n", MappingFunctionName(r.mapping_function));
  std::printf("  LOD threshold     %.1f%s\n", static_cast<double>(r.lod_threshold),
              r.lod_chosen ? " (from the LOD tree)" : "");
  PrintRandomSettings(r.ordering.tour.starts, false);
  std::printf("  Pair file         %s\n", r.pairs_computed ? "computed in this run" : "reused from an earlier run");
  std::printf("  Markers read      %d\n", r.NumMarkers());
  for (const std::string& note : notes) std::printf("  %s\n", note.c_str());
  if (!r.uninformative.empty()) {
    const std::string label = "  Uninformative     " + std::to_string(r.uninformative.size()) + " (one genotype class only):";
    PrintNames(label.c_str(), r.uninformative, r);
  }
  char cap[64];
  std::snprintf(cap, sizeof cap, "; pairs link only below a frequency of %.2f", static_cast<double>(r.max_rf));
  std::printf("  Grouping          %s%s\n", r.lod_reason.c_str(), r.max_rf < 1.0f ? cap : "");
  if (r.bins > 0)
    std::printf("  Bins              %d: markers of the same genotypes mapped once, the others at their "
                "representative's position (--no-bin maps each)\n", r.bins);
  if (!r.ordering_note.empty()) std::printf("  Ordering          %s\n", r.ordering_note.c_str());
  if (r.error_rate)
    std::printf("  Error rate        %.4f per genotype call (%s)\n", *r.error_rate,
                r.error_rate_fixed ? "fixed by --error-rate" : "estimated");
  PrintGroups(r);
  std::printf("  Unlinked markers  %zu\n", r.unlinked.size());
  PrintNames("  Left their group ", r.dropped, r);
  PrintParentalMaps(r);
  std::printf("  Suspect genotypes %lld set to missing in %s\n", static_cast<long long>(r.genotypes_set_missing),
              r.corrected_file.c_str());
  int mapped = 0;
  for (const gae::PipelineGroup& g : r.groups) mapped += static_cast<int>(g.markers.size());
  PrintFileLists(r.files_written, mapped);
  for (const std::string& warning : r.warnings) std::printf("  Warning           %s\n", warning.c_str());
  std::printf("  Time (wall clock)\n");
  for (const auto& [stage, seconds] : r.stage_seconds) std::printf("    %-22s %8.2f s\n", stage.c_str(), seconds);
}

// The tables of --tsv read the map as the front end's model holds it.
gae::MapModel ModelOf(const gae::MapPipelineRecord& r, std::vector<std::string>& names) {
  gae::MapModel m;
  m.num_markers = r.NumMarkers();
  m.num_groups = static_cast<int32_t>(r.groups.size());
  for (const gae::PipelineGroup& g : r.groups) {
    names.push_back(g.name);
    m.group_size.push_back(static_cast<int32_t>(g.markers.size()));
    m.order.insert(m.order.end(), g.markers.begin(), g.markers.end());
    m.position.insert(m.position.end(), g.positions_cm.begin(), g.positions_cm.end());
  }
  return m;
}

}  // namespace

int RunPipelineMap(const MapOptions& o) {
  const gae::ToolProfile& tool = InputTool(o.file, o.tool);
  if (tool.id != gae::MapTool::kMAP && o.order != "default") {
    std::fprintf(stderr, "--order frame applies to MAP files: it places dominant and recessive markers\n");
    return 2;
  }
  float lod = 0.0f;
  if (!o.lod.empty() && o.lod != "auto") {
    try {
      std::size_t used = 0;
      lod = std::stof(o.lod, &used);
      if (used != o.lod.size()) throw std::invalid_argument(o.lod);
    } catch (const std::exception&) {
      std::fprintf(stderr, "--lod takes a number or \"auto\", not \"%s\"\n", o.lod.c_str());
      return 2;
    }
  }
  if (const std::string problem = FolderProblem(o.file); !problem.empty()) {
    std::fprintf(stderr, "%s: %s\n", o.file.c_str(), problem.c_str());
    return 1;
  }
  RunScope scope;
  if (!scope.Begin(o.file, ResultSuffixes(o))) return 1;
  if (!DeclaredMarkersFit(o.file, tool.tool_code)) return 1;
  std::vector<std::string> notes;
  if (CheckBeforePairs(o.file, tool.tool_code, o.force, notes) != 0) return 1;
  gae::MapPipelineSettings settings = SettingsOf(o, tool, lod);
  settings.check_pairs = [&](const gae::MapPipelineRecord& so_far, const std::vector<int32_t>& anchors) {
    return CheckPairFile(o.file, tool.tool_code, so_far.marker_names, anchors, so_far.lod_threshold, o.force, notes) == 0;
  };
  LogRunSettings(tool.tool_code, settings.ordering.tour.starts);
  gae::UniformStream random;
  gae::MapPipelineRecord record;
  PairProgress progress;
  settings.pairs_starting = [&progress](const std::string& lrd, int64_t bytes) { progress.Start(lrd, bytes); };
  StageProgress stage_progress;
  settings.progress = [&progress, &stage_progress](std::string_view stage, double share) {
    progress.Stop();  // the pairs are done once a later stage reports
    stage_progress.Show(stage, share);
  };
  {
    const LibraryOutput captured;
    const gae::LogSession log(tool.letters);
    record = gae::RunMapPipeline(settings, random);
    progress.Stop();
  }
  if (record.stopped_by_check) return 1;
  if (!record.Ok()) {
    if (record.failure > 0) ExplainRefusal(o.file, tool.tool_code, record.failure);
    else std::fprintf(stderr, "%s: %s\n", o.file.c_str(), record.failure_text.c_str());
    return 1;
  }
  if (!record.pairs_recomputed_because.empty())
    std::printf("%s is computed again: %s.\n", record.pair_file.c_str(), record.pairs_recomputed_because.c_str());
  if (o.tsv) {
    std::vector<std::string> names;
    const gae::MapModel m = ModelOf(record, names);
    if (!WriteMapTables(o.file, tool.record_length, m, names,
                        [&](int marker) { return record.marker_names[static_cast<std::size_t>(marker - 1)]; }, o.min_lod))
      return 1;
    record.files_written.push_back(gae::ResultStem(o.file) + ".map.tsv");
    record.files_written.push_back(gae::ResultStem(o.file) + ".pairs.tsv");
  }
  if (const std::string filled = FillQtlFiles(o.file); !filled.empty()) notes.push_back(filled);
  PrintSummary(o.file, tool, record, notes);
  return 0;
}

}  // namespace gaecli
