// Our own linkage map of a genotype file (bi-parental MAP, clonal CDM or pure-line PLM): the
// input read once, the pairwise file computed or reused, linkage groups by LOD under a
// frequency cap, each group ordered and given distances, and the tool's reports written beside
// the input. It returns one record of what it did; it prints nothing of its own (the readers and
// the pair writers say their catalogue lines as everywhere in the library).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/order_group.h"
#include "input/tool_codes.h"
#include "pipeline/group_layout.h"
#include "report/map_downstream.h"
#include "report/tool_results.h"
#include "twopoint/pair_estimator.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

class MappingWatch;

struct MapPipelineRecord;

struct MapPipelineSettings {
  std::string input_path;
  int32_t tool_code = kMapToolCode;  // 104 bi-parental, 20 clonal F1 or double cross, 30 pure lines
  // Grouping: a pair links when its LOD reaches the threshold and its frequency lies below
  // max_rf. Without a threshold the LOD tree's plateau chooses it, or `fallback_lod` when the
  // tree shows none.
  std::optional<float> lod;
  float max_rf = 0.5f;
  float fallback_lod = 3.0f;
  // The genotyping-error rate of the multipoint maps: estimated from the data when absent.
  std::optional<double> error_rate;
  StartOrderOptions ordering;
  // Markers of the same genotypes mapped once (see bin_carry.h): from kBinFrom markers on by
  // default; `bin_tolerance` the share of lines typed in both where they may still differ.
  enum class Binning { kAuto, kOn, kOff };
  Binning binning = Binning::kAuto;
  float bin_tolerance = 0.0f;
  ResultSwitches switches{true, true, true, true};
  int threads = 1;  // for the pair estimates
  // The maximum of each pair's likelihood by default; the desktop program's estimator on demand.
  PairEstimator estimator = PairEstimator::kExact;
  // Lines for the run log alone (each random start of the ordering); may be empty.
  std::function<void(std::string_view)> log;
  // Told before the pairs are estimated (not when a complete pair file is reused): the file and
  // the size it will reach, for a display of progress. May be empty.
  std::function<void(const std::string& pair_file, int64_t bytes)> pairs_starting;
  // Hears the share done of a long stage ("LOD tree") now and then, for a display of progress.
  // May be empty.
  std::function<void(std::string_view stage, double share)> progress;
  // The caller's checks of the pairs once the threshold stands (anchors the pairs deny,
  // switched alleles): false stops the run before anything is ordered or written. May be empty.
  std::function<bool(const MapPipelineRecord& so_far, const std::vector<int32_t>& anchors)> check_pairs;
  // The owner of the process's watch over mapped pair files; none: a pair file truncated by
  // another program during the run ends the process.
  MappingWatch* store_watch = nullptr;
};

struct PipelineGroup {
  std::string name;                 // "Chromsome3", trailing blanks dropped
  std::vector<int32_t> markers;     // 1-based input numbers in map order
  std::vector<float> positions_cm;  // parallel to `markers`
  float LengthCm() const { return positions_cm.empty() ? 0.0f : positions_cm.back() - positions_cm.front(); }
};

// A parent's own map in a clonal population: its segregating markers on each group.
struct ParentalMap {
  std::vector<int32_t> group_markers;
  std::vector<float> group_lengths_cm;
  int32_t total_markers = 0;
  float total_cm = 0.0f;
};

struct MapPipelineRecord {
  // 0 when the map was made; otherwise the message code of the step that stopped it (its
  // catalogue line said why) or -1 with `failure_text`.
  int32_t failure = 0;
  std::string failure_text;
  bool stopped_by_check = false;  // the caller's check of the pairs said why

  // The data.
  int32_t tool_code = kMapToolCode;
  int32_t population_type = 0, mapping_function = 0, num_individuals = 0;
  std::vector<std::string> marker_names;  // trailing blanks dropped, input order
  std::vector<int32_t> uninformative;     // 1-based: markers showing one genotype class only

  // The pairs.
  std::string pair_file;
  bool pairs_computed = false;
  std::string pairs_recomputed_because;  // a stale pair file removed first, and why

  // The grouping.
  float lod_threshold = 0.0f;
  bool lod_chosen = false;   // by the LOD tree's plateau
  std::string lod_reason;    // what the tree showed, or why the fallback was taken
  float max_rf = 0.5f;
  int64_t pairs_capped = 0;  // pairs whose frequency kept them from linking

  // The map.
  int32_t bins = 0;  // sets of markers mapped once, when the run binned; 0 otherwise
  StartOrderOptions ordering;  // as the settings asked
  std::string distances;     // which method gave the order and distances
  std::string ordering_note;
  std::vector<PipelineGroup> groups;  // groups of one marker included
  std::vector<int32_t> unlinked;      // 1-based, dropped markers included
  std::vector<int32_t> dropped;       // left their group: linked to nothing in it
  std::optional<double> error_rate;   // per genotype call, when the maps model errors
  bool error_rate_fixed = false;      // given by the settings rather than estimated
  // Calls the multipoint maps find unlikely given the whole chromosome (marker 1-based, individual
  // 0-based): the corrected data set sets them to missing.
  std::vector<GenotypeCell> suspects;

  // The results.
  int64_t genotypes_set_missing = 0;  // by the error scan, in the corrected data set
  std::string corrected_file;
  std::vector<ParentalMap> parental_maps;  // clonal: the first parent's, then the second's
  // Clonal maps from the multipoint chain: each mapped marker's phase sign in each parent (map
  // order, +1 in the phase of its group's first marker segregating in that parent) and each
  // group's length in each parent. Empty when the pairs give them.
  std::vector<int8_t> phase_signs[2];
  std::vector<float> parental_lengths_cm[2];
  std::vector<std::string> files_written;
  std::vector<std::string> warnings;
  std::vector<std::pair<std::string, double>> stage_seconds;  // wall clock

  bool Ok() const { return failure == 0; }
  int32_t NumMarkers() const { return static_cast<int32_t>(marker_names.size()); }
};

// The whole run. `random` is the stream the ordering's random starts and the error scan draw
// from (the clonal pair estimates too).
MapPipelineRecord RunMapPipeline(const MapPipelineSettings& settings, UniformStream& random);

}  // namespace gae
