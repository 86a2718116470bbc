#include "input/qtl_file_reader.h"

#include <initializer_list>

#include "vocabulary/message_code.h"
#include "input/map_marker_check.h"

namespace gae {

namespace {

using F = HeaderField;

struct ToolLayout {
  QtlTool tool;
  int tool_code;
  const char* name;
  std::initializer_list<HeaderField> fields;
};

const ToolLayout kLayouts[] = {
    {QtlTool::kBIP, 107, "BIP",
     {F::kIndicator, F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit,
      F::kNumChs, F::kPopulationSize, F::kNumTraits}},
    {QtlTool::kSDL, 106, "SDL",
     {F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit, F::kNumChs,
      F::kPopulationSize}},
    {QtlTool::kMET, 108, "MET",
     {F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit, F::kNumChs,
      F::kPopulationSize, F::kNumEnvs}},
    {QtlTool::kNAM, 110, "NAM",
     {F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit, F::kNumChs,
      F::kNumFamilies, F::kNumTraits}},
    {QtlTool::kPLQ, 30, "PLQ",
     {F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit, F::kNumChs,
      F::kPopulationSize, F::kNumTraits}},
    {QtlTool::kCDQ, 20, "CDQ",
     {F::kPopulationType, F::kMappingFunction, F::kSpaceType, F::kSpaceUnit, F::kNumChs,
      F::kPopulationSize, F::kNumTraits}},
    {QtlTool::kCSL, 109, "CSL",
     {F::kIndicator, F::kNumMarkers, F::kPopulationSize, F::kNumTraits, F::kNumEnvs,
      F::kNumReps}},
};

const ToolLayout& LayoutOf(QtlTool tool) {
  for (const ToolLayout& layout : kLayouts) {
    if (layout.tool == tool) return layout;
  }
  return kLayouts[0];
}

// The phenotype rows that follow the markers: traits, environments, or one row per trait,
// environment and replication for the segment lines (trait by trait, then environment).
bool ReadPhenotypes(InputFile& in, QtlTool tool, QtlFileData& out, bool& missing_word_seen) {
  const int32_t size = out.Header(F::kPopulationSize);
  switch (tool) {
    case QtlTool::kSDL:
      return true;
    case QtlTool::kMET:
      return ReadPhenotypeSection(in, out.Header(F::kNumEnvs), size, out.phenotypes,
                                  missing_word_seen);
    case QtlTool::kCSL: {
      const int64_t rows = static_cast<int64_t>(out.Header(F::kNumTraits)) *
                           out.Header(F::kNumEnvs) * out.Header(F::kNumReps);
      return ReadSegmentLinePhenotypes(in, rows, size, out.phenotypes, missing_word_seen);
    }
    default:
      return ReadPhenotypeSection(in, out.Header(F::kNumTraits), size, out.phenotypes,
                                  missing_word_seen);
  }
}

}  // namespace

int ToolCodeOf(QtlTool tool) { return LayoutOf(tool).tool_code; }
std::string_view ToolName(QtlTool tool) { return LayoutOf(tool).name; }

void ReadQtlFile(InputFile& in, QtlTool tool, QtlFileData& out, bool& missing_word_seen) {
  MessageCode() = 0;
  out = QtlFileData{};
  const ToolLayout& layout = LayoutOf(tool);
  for (HeaderField field : layout.fields) {
    if (!ReadHeaderField(in, field, layout.tool_code, out.header[static_cast<int>(field)])) return;
  }
  int32_t& population_size = out.header[static_cast<int>(F::kPopulationSize)];
  if (tool == QtlTool::kNAM &&
      !ReadFamilyRows(in, out.Header(F::kNumFamilies), out.families, population_size))
    return;

  // The segment-line file has no map: its header gives the number of markers.
  const bool has_map = tool != QtlTool::kCSL;
  int32_t num_markers = out.Header(F::kNumMarkers);
  if (has_map) {
    if (!ReadMapSection(in, layout.tool_code, out.Header(F::kNumChs), out.Header(F::kSpaceType),
                        out.Header(F::kSpaceUnit), out.map))
      return;
    num_markers = out.map.total_markers;
  }
  if (!ReadMarkerSection(in, layout.tool_code, out.Header(F::kPopulationType), num_markers,
                         population_size, out.markers))
    return;
  if (has_map && !CheckMapAgainstMarkers(out.map.chromosomes, out.markers.names)) return;
  ReadPhenotypes(in, tool, out, missing_word_seen);
}

}  // namespace gae
