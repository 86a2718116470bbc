#include <utility>

#include "pipeline/pipeline_steps.h"
#include "report/clonal_layout.h"
#include "report/clonal_output.h"
#include "report/clonal_reports.h"
#include "report/clonal_segregation.h"
#include "report/segregation.h"
#include "report/text_file.h"
#include "report/tool_results.h"

namespace gae {

namespace {

// The finished map and the data read, as every tool's writer takes them; the data is moved.
void FillLayout(MapToolInput& data, const MapModel& map, const std::vector<std::string>& group_names,
                GenotypeLayout& out) {
  out.num_markers = map.num_markers;
  out.num_mapped = map.num_mapped;
  out.num_unlinked = map.num_unlinked;
  out.anchor = data.anchors;
  out.chromosome_names = group_names;
  out.chromosome_sizes = map.group_size;
  out.order = map.order;
  out.position.assign(map.position.begin(), map.position.begin() + map.num_mapped);
  out.marker_names = std::move(data.markers.names);
  out.mapping_function = data.mapping_function;
  out.population_type = data.population_type;
  out.space_type = data.space_type;
  out.num_individuals = data.population_size;
  out.types = std::move(data.markers.types);
}

ParentalMap ParentalMapOf(const SummaryTable& table) {
  ParentalMap parent;
  parent.group_markers = table.chromosome_markers;
  parent.group_lengths_cm = table.chromosome_lengths;
  for (size_t g = 0; g < table.chromosome_markers.size(); ++g) {
    parent.total_markers += table.chromosome_markers[g];
    parent.total_cm += table.chromosome_lengths[g];
  }
  return parent;
}

std::string CorrectedSuffix(int32_t tool_code) {
  if (tool_code == kClonalToolCode) return "EC.cdm";
  return tool_code == kPureLineToolCode ? "EC.plm" : "EC.map";
}

}  // namespace

std::vector<int32_t> UninformativeMarkers(int32_t tool_code, const MapToolInput& data) {
  std::vector<int32_t> found;
  if (tool_code == kPureLineToolCode) return found;
  const int64_t n = data.population_size;
  for (int32_t i = 0; i < data.num_markers; ++i) {
    const char* types = data.markers.types.data() + i * n;
    int classes = 0;
    if (tool_code == kClonalToolCode) {
      const ClonalCounts counts = CountClonalTypes(types, n);
      for (int t = 0; t < 11; ++t) classes += counts[static_cast<size_t>(t)] > 0;  // the last, XX, is missing
    } else {
      const SegregationCounts c =
          SegregationChiSquare(data.population_type, data.markers.categories[static_cast<size_t>(i)], types,
                               static_cast<int>(n)).counts;
      classes = (c.n2 > 0) + (c.n1 > 0) + (c.n0 > 0);
    }
    if (classes <= 1) found.push_back(i + 1);
  }
  return found;
}

void WriteResults(const MapPipelineSettings& settings, MapToolInput& data, const MapModel& map,
                  const std::vector<std::string>& group_names, const PairTable& pairs, UniformStream& random,
                  MapPipelineRecord& record) {
  ResultFiles files(settings.input_path);
  if (settings.tool_code == kClonalToolCode) {
    ClonalLayout layout;
    layout.category = data.markers.categories;
    FillLayout(data, map, group_names, layout);
    layout.phase_first = record.phase_signs[0];
    layout.phase_second = record.phase_signs[1];
    for (const ClonalView parent : {ClonalView::kFirstParent, ClonalView::kSecondParent}) {
      ParentalMap summary = ParentalMapOf(ClonalSummary(layout, pairs, parent));
      // The chain's own parental lengths, where it made the map, over the pairs' neighbours.
      const std::vector<float>& chain = record.parental_lengths_cm[parent == ClonalView::kFirstParent ? 0 : 1];
      if (chain.size() == summary.group_lengths_cm.size()) {
        summary.group_lengths_cm = chain;
        summary.total_cm = 0.0f;
        for (const float length : chain) summary.total_cm += length;
      }
      record.parental_maps.push_back(std::move(summary));
    }
    record.genotypes_set_missing = WriteClonalResults(layout, pairs, files, settings.switches, random,
                                                      record.error_rate ? &record.suspects : nullptr);
  } else {
    MapLayout layout;
    layout.marker_class = data.markers.categories;
    FillLayout(data, map, group_names, layout);
    record.genotypes_set_missing = settings.tool_code == kPureLineToolCode
                                       ? WritePlmResults(layout, pairs, settings.switches, random, files,
                                                         record.error_rate ? &record.suspects : nullptr)
                                       : WriteMapResults(layout, pairs, settings.switches, random, files,
                                                         record.error_rate ? &record.suspects : nullptr);
  }
  record.corrected_file = files.Stem() + CorrectedSuffix(settings.tool_code);
  record.files_written.insert(record.files_written.end(), files.Written().begin(), files.Written().end());
  if (!files.Failed().empty()) {
    record.failure = -1;
    record.failure_text = "could not be written completely (is the disk full?):";
    for (const std::string& failed : files.Failed()) record.failure_text += " " + failed;
  }
  for (const std::string& skipped : files.Skipped())
    record.warnings.push_back(skipped + " is the input file: that result was not written");
}

}  // namespace gae
