// gaengine map --front-end FILE: the whole linkage-map construction with the default settings,
// run step by step through the exports as the desktop front end does, with a readable summary at
// the end. .cdm runs the clonal tool (clonal F1 and double cross), .plm the pure-line one, any
// other file the bi-parental one.
#include <algorithm>
#include <optional>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands.h"
#include "vocabulary/message_code.h"
#include "vocabulary/stopwatch.h"
#include "frame/name_codes.h"
#include "front_end_map.h"
#include "vocabulary/population.h"
#include "frame/tool_profile.h"
#include "gaengine.h"
#include "input/header_fields.h"
#include "library_output.h"
#include "lod_tree_view.h"
#include "map_check.h"
#include "map_gates.h"
#include "run_guard.h"
#include "vocabulary/run_log.h"
#include "trait_templates.h"
#include "map_command.h"
#include "map_options.h"
#include "map_summary_extras.h"
#include "run_settings.h"
#include "tsv_export.h"
#include "user_errors.h"
#include "twopoint/pair_store_writer.h"
#include "report/text_file.h"

namespace gaecli {

namespace {

// What the command calls for each tool it runs: its check and output exports, the design whose
// population names the summary uses, and the files that a run writes.
struct MapRunTool {
  gae::MapTool id;
  int32_t design;
  int (*check)(const std::string&, MarkerTable&);
  void (*output)(int, const char*, int, const int*, int, int, int, const int*, const int*,
                 const int*, const float*, int, int, int, int);
  std::vector<const char*> suffixes;
  const char* corrected;  // the corrected data set
  const gae::ToolProfile& Profile() const { return gae::ProfileOf(id); }
};

// `chosen` is --tool (MAP, CDM or PLM, any case) or empty for the file's extension.
const MapRunTool& ToolOfFile(const std::string& file, const std::string& chosen) {
  static const MapRunTool kMap{gae::MapTool::kMAP, gae::kBiparentalDesign, CheckMapFile, MAPOutput,
                               {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".sdl", ".bip", ".met", ".err", "EC.map"},
                               "EC.map"};
  static const MapRunTool kPlm{gae::MapTool::kPLM, gae::kFourWayDesign, CheckPlmFile, PLMOutput,
                               {".LRD", ".sum", ".mtp", ".lod", ".rec", ".dis", ".plq", ".err", "EC.plm"},
                               "EC.plm"};
  static const MapRunTool kCdm{gae::MapTool::kCDM, gae::kClonalDesign, CheckCdmFile, CDMOutput,
                               {".LRD", ".sum", ".sumf", ".summ", ".mtp", ".lod", ".lodf", ".lodm", ".rec", ".recf",
                                ".recm", ".dis", ".disf", ".dism", ".hap", ".cdq", ".err", "EC.cdm"},
                               "EC.cdm"};
  const gae::MapTool id = InputTool(file, chosen).id;
  return id == gae::MapTool::kPLM ? kPlm : id == gae::MapTool::kCDM ? kCdm : kMap;
}

// The population type: the first header value, read by the library's own reader.
int PopulationTypeOf(const std::string& path, const MapRunTool& tool) {
  gae::InputFile in;
  int32_t type = 0;
  if (!in.Open(path)) return 0;
  gae::ReadHeaderField(in, gae::HeaderField::kPopulationType, tool.Profile().tool_code, type);
  gae::MessageCode() = 0;  // a bad type shows as "?" in the summary; the run has already said why
  return type;
}

using gae::Stopwatch;

// The total of the error report's "TotalError" line.
long long FlaggedGenotypes(const std::string& err_path) {
  std::ifstream in(err_path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("TotalError", 0) == 0) return std::stoll(line.substr(10));
  }
  return -1;
}

// A marker that shows one genotype class among its typed individuals cannot be placed: each
// of its pairs is stored as unlinked or as free recombination.
void PrintUninformative(const MarkerTable& markers) {
  // Only the bi-parental check keeps the class counts; the pure-line reader refuses a marker
  // with one allele among its lines outright.
  if (markers.size_a.empty() && markers.clonal_sizes.empty()) return;
  std::vector<int> found;
  for (int i = 0; i < markers.num_markers; ++i) {
    int classes = 0;
    if (markers.clonal_sizes.empty()) {
      classes = (markers.size_a[i] > 0) + (markers.size_h[i] > 0) + (markers.size_b[i] > 0);
    } else {
      for (int t = 0; t < 11; ++t) classes += markers.clonal_sizes[t][i] > 0;  // XX is missing
    }
    if (classes <= 1) found.push_back(i);
  }
  if (found.empty()) return;
  std::printf("  Uninformative     %zu (one genotype class only):", found.size());
  const std::size_t shown = std::min<std::size_t>(found.size(), 10);
  for (std::size_t k = 0; k < shown; ++k) std::printf(" %s", markers.Name(found[k]).c_str());
  if (shown < found.size()) std::printf(" ...");
  std::printf("\n");
}

// The chromosome table of a summary file (.sum, .sumf, .summ): each chromosome's marker count
// and length, the whole genome's last.
std::vector<std::pair<int, double>> ChromosomeTable(const std::string& path) {
  std::vector<std::pair<int, double>> rows;
  std::ifstream in(path);
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    if (line.find("ChromLength(cM)") != std::string::npos) {
      inside = true;
    } else if (inside && line.size() >= 80) {
      rows.push_back({std::stoi(line.substr(40, 20)), std::stod(line.substr(60, 20))});
      if (line.find("WholeGenome") != std::string::npos) break;
    }
  }
  return rows;
}

// Each parent's map of a clonal run leaves out the markers that do not segregate in it.
void PrintParentalMaps(const std::string& stem, const std::vector<std::string>& names) {
  for (const auto& [suffix, parent] : {std::pair{".sumf", "First parent"}, std::pair{".summ", "Second parent"}}) {
    const std::vector<std::pair<int, double>> table = ChromosomeTable(stem + suffix);
    if (table.empty()) continue;
    std::printf("  %-17s %d markers, %.1f cM\n", parent, table.back().first, table.back().second);
    for (size_t g = 0; g + 1 < table.size() && g < names.size(); ++g) {
      const std::string& label = names[g];
      std::printf("    %-13s %5d markers %9.1f cM\n", label.substr(0, label.find_last_not_of(' ') + 1).c_str(),
                  table[g].first, table[g].second);
    }
  }
}

void PrintSummary(const std::string& file, const MapRunTool& tool, const MarkerTable& markers,
                  const FrontEndMap& map, const std::vector<std::pair<const char*, double>>& times,
                  const std::string& grouping_note, const std::string& ordering_note, const RunFacts& facts) {
  const int type = PopulationTypeOf(file, tool);
  std::printf("\nSummary of %s\n", file.c_str());
  const std::string_view name = gae::PopulationName(tool.design, type);
  std::printf("  Population        %s (type %d)\n", name.empty() ? "?" : std::string(name).c_str(), type);
  std::printf("  Pipeline          front end: the exports' default sequence, as the desktop program runs it\n");
  PrintRunSettings(file, facts.tool_code, facts.threshold, facts.default_lod, facts.starts, facts.pairs_computed);
  std::printf("  Markers read      %d\n", markers.num_markers);
  for (const std::string& note : facts.notes) std::printf("  %s\n", note.c_str());
  PrintUninformative(markers);
  if (!grouping_note.empty()) std::printf("  Grouping          %s\n", grouping_note.c_str());
  const gae::MapModel& m = map.model;
  const std::vector<std::string> names = map.Names();
  if (!ordering_note.empty()) std::printf("  Ordering          %s\n", ordering_note.c_str());
  std::printf("  Linkage groups    %d\n", m.num_groups - OneMarkerGroups(m));
  int start = 0;
  for (int g = 0; g < m.num_groups; ++g) {
    const int size = m.group_size[g];
    if (size == 1) {  // listed apart below
      start += size;
      continue;
    }
    const float length = size > 0 ? m.position[start + size - 1] - m.position[start] : 0.0f;
    const std::string& label = names[static_cast<size_t>(g)];
    std::printf("    %-13s %5d markers %9.1f cM\n", label.substr(0, label.find_last_not_of(' ') + 1).c_str(), size, length);
    start += size;
  }
  PrintOneMarkerGroups(m, names, [&](int k) { return markers.Name(m.order[static_cast<std::size_t>(k)] - 1); });
  std::printf("  Unlinked markers  %d\n", m.num_unlinked);
  const std::string stem = gae::ResultStem(file);
  if (tool.id == gae::MapTool::kCDM) PrintParentalMaps(stem, names);
  const long long flagged = FlaggedGenotypes(stem + ".err");
  if (flagged >= 0)
    std::printf("  Suspect genotypes %lld set to missing in %s%s\n", flagged, stem.c_str(), tool.corrected);
  PrintFilesWritten(stem, tool.suffixes, m.num_mapped);
  std::printf("  Time (wall clock)\n");
  for (const auto& [stage, seconds] : times) std::printf("    %-20s %8.2f s\n", stage, seconds);
}

// The default threshold of a whole run, a LOD score, as the library's MAP profile holds it.
float DefaultLod() { return gae::ProfileOf(gae::MapTool::kMAP).defaults.threshold; }

// The LOD threshold of the run from --lod ("auto", a number, or empty for the default), with
// the words the summary gives about it. False when the option cannot be used.
bool ChooseThreshold(const std::string& file, const std::string& lod, int num_markers, float max_rf,
                     float& threshold, std::string& note) {
  threshold = DefaultLod();
  if (lod.empty()) return true;
  if (lod != "auto") {
    try {
      size_t used = 0;
      threshold = std::stof(lod, &used);
      if (used != lod.size()) throw std::invalid_argument(lod);
    } catch (const std::exception&) {
      std::fprintf(stderr, "--lod takes a number or \"auto\", not \"%s\"\n", lod.c_str());
      return false;
    }
    char text[64];
    std::snprintf(text, sizeof text, "LOD %.1f, as asked", static_cast<double>(threshold));
    note = text;
    return true;
  }
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(file, num_markers, 2.0f, 15.0f, 1.0f, rows, max_rf)) {
    std::fprintf(stderr, "%s: cannot read %s\n", file.c_str(), gae::PairStoreName(file).c_str());
    return false;
  }
  const AutoLod choice = ChooseLod(rows, num_markers);
  if (choice.found) {
    threshold = choice.threshold;
    note = choice.reason;
  }
  return true;
}

std::string CapNote(float max_rf) {
  char text[64];
  std::snprintf(text, sizeof text, "pairs link only below a frequency of %.2f", static_cast<double>(max_rf));
  return text;
}

// With the default threshold: a warning when one group holds most markers while the LOD tree
// shows more groups that hold together over a run of higher thresholds. The tree links pairs
// under the same frequency cap as the grouping did, so that the hint describes this run.
std::string DefaultThresholdWarning(const std::string& file, const FrontEndMap& map, float max_rf) {
  const gae::MapModel& m = map.model;
  const int largest = m.group_size.empty() ? 0 : *std::max_element(m.group_size.begin(), m.group_size.end());
  if (2 * largest <= m.num_markers) return "";
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(file, m.num_markers, 2.0f, 15.0f, 1.0f, rows, max_rf)) return "";
  const AutoLod choice = ChooseLod(rows, m.num_markers);
  if (!choice.found || choice.threshold <= DefaultLod() || choice.groups < 2) return "";
  return "warning: one group holds " + std::to_string(largest) + " of " + std::to_string(m.num_markers) +
         " markers at LOD 3.0, while the LOD tree gives " + choice.reason + "; try --lod auto";
}

}  // namespace

std::vector<std::string> ResultSuffixes(const MapOptions& o) {
  const std::vector<const char*>& reports = ToolOfFile(o.file, o.tool).suffixes;
  std::vector<std::string> suffixes(reports.begin(), reports.end());
  if (o.tsv) suffixes.insert(suffixes.end(), {".map.tsv", ".pairs.tsv"});
  if (o.plots) {
    const std::vector<std::string> pictures = MapPictureSuffixes();
    suffixes.insert(suffixes.end(), pictures.begin(), pictures.end());
  }
  return suffixes;
}

int RunFrontEndMap(const MapOptions& o) {
  const std::string& file = o.file;
  const std::string& lod = o.lod;
  const std::string& order = o.order;
  float max_rf = o.max_rf;
  const MapRunTool& run = ToolOfFile(file, o.tool);
  const gae::ToolProfile& tool = run.Profile();
  // The LOD threshold and its tree belong to the bi-parental tool, which groups by LOD.
  const bool by_lod = run.id == gae::MapTool::kMAP;
  if (!by_lod && (!lod.empty() || order != "default" || max_rf >= 0.0f)) {
    std::fprintf(stderr, "With --front-end, --lod, --order and --max-rf apply to MAP files; %s groups by recombination frequency\n",
                 std::string(tool.letters).c_str());
    return 2;
  }
  if (const std::string problem = FolderProblem(file); !problem.empty()) {
    std::fprintf(stderr, "%s: %s\n", file.c_str(), problem.c_str());
    return 1;
  }
  RunScope scope;
  if (!scope.Begin(file, ResultSuffixes(o))) return 1;
  Stopwatch clock;
  std::vector<std::pair<const char*, double>> times;
  MarkerTable markers;
  std::vector<std::string> notes;
  if (CheckBeforePairs(file, tool.tool_code, o.force, notes) != 0) return 1;
  if (const int status = run.check(file, markers); status != 0) {
    ExplainRefusal(file, tool.tool_code, status);
    return 1;
  }
  times.push_back({"read and pairs", clock.Lap()});
  // The settled defaults of a whole run of the tool, stage by stage, as the front end passes
  // them; only the grouping threshold of MAP and the number of random starts may be chosen on
  // the command line.
  const gae::StageDefaults& d = tool.defaults;
  RunFacts facts{tool.tool_code, d.threshold, StartsOr(d.ordering_param1), PairFileComputed(), lod.empty(), {}};
  float& threshold = facts.threshold;
  std::string grouping_note;
  // --lod auto caps linkage at a frequency of 1/2 unless told otherwise.
  if (max_rf < 0.0f) max_rf = lod == "auto" ? 0.5f : gae::kNoFrequencyCap;
  // The clonal and pure-line tools keep their own threshold, a recombination frequency.
  if (by_lod && !ChooseThreshold(file, lod, markers.num_markers, max_rf, threshold, grouping_note)) return 1;
  if (CheckPairFile(file, tool.tool_code, markers, threshold, o.force, notes) != 0) return 1;
  facts.notes = std::move(notes);
  LogRunSettings(tool.tool_code, facts.starts);
  FrontEndMap map;
  map.loci = gae::ReadLocusTableBeside(file);
  for (int k = 0; k < markers.num_markers; ++k) map.marker_names.push_back(markers.Name(k));
  gae::MapModel& m = map.model;
  gae::AllocateMapState(m, markers.num_markers);
  int status = 0;
  std::optional<LibraryOutput> quiet(std::in_place);
  const bool capped = max_rf < gae::kNoFrequencyCap;
  if (capped) {
    if (!GroupByLinkageRule(gae::LinkageRule{threshold, max_rf}, markers.anchor.data(), m)) return 1;
  } else {
    MAPGrouping(tool.tool_code, d.grouping_method, d.grouping_by, threshold, m.num_markers,
                markers.anchor.data(), m.group.data(), &status);
  }
  map.BuildFromGroups();
  if (lod.empty() && by_lod) grouping_note = DefaultThresholdWarning(file, map, max_rf);
  if (capped) grouping_note += (grouping_note.empty() ? "" : "; ") + CapNote(max_rf);
  times.push_back({"grouping", clock.Lap()});
  std::string ordering_note;
  if (order == "frame") {
    if (!OrderAroundFrames(markers, m, ordering_note)) return 1;
    times.push_back({"ordering and ripple", clock.Lap()});
  } else {
    if (status == 0)
      MAPOrderingAll(tool.tool_code, d.ordering_method, d.ordering_by, d.ordering_option, facts.starts,
                     d.ordering_param2, m.num_markers, m.num_groups, m.group_size.data(), m.group_status.data(),
                     &m.map_state, markers.anchor.data(), m.group.data(), m.order.data(), m.position.data(), &status);
    times.push_back({"ordering", clock.Lap()});
    if (status == 0)
      MAPRipplingAll(tool.tool_code, d.rippling_by, d.window_size, m.num_markers, m.num_groups,
                     m.group_size.data(), m.group_status.data(), &m.map_state, m.group.data(),
                     m.order.data(), m.position.data(), &status);
    times.push_back({"rippling", clock.Lap()});
  }
  const std::vector<int> names = gae::GroupNamesToCodes(map.Names());
  const PathArg path(file);
  const gae::LogSession output_log(tool.letters);  // a report that cannot be written is named there
  if (status == 0)
    run.output(path.Len(), path.Data(), m.num_markers, markers.anchor.data(), m.num_mapped,
               m.num_unlinked, m.num_groups, names.data(), m.group_size.data(), m.order.data(),
               m.position.data(), 1, 1, 1, 1);
  quiet.reset();
  if (status != 0) {
    ExplainRefusal(file, tool.tool_code, status);
    return 1;
  }
  if (!ResultsWritten(file, tool.letters)) return 1;
  times.push_back({"reports and scan", clock.Lap()});
  if (const std::string filled = FillQtlFiles(file); !filled.empty()) facts.notes.push_back(filled);
  if (o.tsv && !WriteMapTables(file, tool.record_length, m, map.Names(),
                               [&](int marker) { return markers.Name(marker - 1); }, o.min_lod))
    return 1;
  PrintSummary(file, run, markers, map, times, grouping_note, ordering_note, facts);
  return 0;
}

}  // namespace gaecli
