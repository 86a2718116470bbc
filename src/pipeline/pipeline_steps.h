// The steps of the map pipeline between reading the input and writing the results, each on
// what the step before it left.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/lod_tree.h"
#include "engine/map_state.h"
#include "input/map_tool_reader.h"
#include "pipeline/map_pipeline.h"
#include "twopoint/pair_table.h"
#include "vocabulary/uniform_stream.h"

namespace gae {

// Words per pair record in the pairwise file of a tool.
int32_t PairRecordLength(int32_t tool_code);

// Makes sure the pairwise file beside the input holds the pairs of `data`: a file computed from
// other data, or changed since, is removed and computed again. Fills the record's pair fields;
// false (with the failure set) when the file cannot be written.
bool EnsurePairFile(const MapPipelineSettings& settings, const MapToolInput& data, UniformStream& random,
                    MapPipelineRecord& record);

// The threshold a run groups at when it is given none: the plateau of the LOD tree's `rows`
// (over the automatic thresholds, `n` markers), or `fallback_lod` when the tree shows none.
struct GroupingLod {
  float threshold = 0.0f;
  bool chosen = false;  // by the plateau
  std::string reason;
};
GroupingLod ChooseGroupingLod(const std::vector<LodTreeRow>& rows, int32_t n, float fallback_lod);

// Groups the markers by LOD under the frequency cap into `map` (allocated for them, anchors
// taken from the input), with the threshold asked or chosen from the LOD tree. Fills the
// record's grouping fields. `passed` hears how far the one pass over the pairs has read (in
// records), so that a store in a file can let go of what lies behind it.
void GroupByLod(const PairTable& pairs, const MapPipelineSettings& settings, const std::vector<int32_t>& anchors,
                MapModel& map, MapPipelineRecord& record, const std::function<void(int64_t)>& passed = {});

// Markers that show a single genotype class among their typed individuals (bi-parental and
// clonal data; pure lines with one allele are refused by the reader): each of their pairs is
// unlinked or free recombination, so they cannot be placed. 1-based.
std::vector<int32_t> UninformativeMarkers(int32_t tool_code, const MapToolInput& data);

// Writes every result file of the tool for the finished `map` through `files`, and fills the
// record's result fields (genotypes the scan set to missing, the parents' maps of a clonal
// population). The data read is consumed.
void WriteResults(const MapPipelineSettings& settings, MapToolInput& data, const MapModel& map,
                  const std::vector<std::string>& group_names, const PairTable& pairs, UniformStream& random,
                  MapPipelineRecord& record);

}  // namespace gae
