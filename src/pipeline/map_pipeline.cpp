#include "pipeline/map_pipeline.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "engine/map_state.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "multipoint/clonal_map.h"
#include "multipoint/founder_map.h"
#include "pipeline/bin_carry.h"
#include "pipeline/group_layout.h"
#include "pipeline/pipeline_steps.h"
#include "prep/group_names_from_loci.h"
#include "prep/locus_table.h"
#include "twopoint/pair_store_file.h"
#include "vocabulary/message_code.h"
#include "vocabulary/stopwatch.h"

namespace gae {

namespace {


std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

bool ReadInput(const MapPipelineSettings& settings, MapToolInput& data, MapPipelineRecord& record) {
  MessageCode() = 0;
  InputFile in;
  if (!in.Open(settings.input_path)) {
    record.failure = -1;
    record.failure_text = "cannot open " + settings.input_path;
    return false;
  }
  ReadMapToolInput(in, settings.tool_code, data);
  in.Close();
  if (MessageCode() != 0) {
    record.failure = MessageCode();  // the reader has printed its line
    return false;
  }
  record.population_type = data.population_type;
  record.mapping_function = data.mapping_function;
  record.num_individuals = data.population_size;
  for (const std::string& name : data.markers.names) record.marker_names.push_back(Trimmed(name));
  record.uninformative = UninformativeMarkers(settings.tool_code, data);
  return true;
}

// A group's layout and what made it.
struct GroupMapping {
  GroupLayout layout;
  const char* method;        // for the record: which distances the map holds
  bool estimates_error_rate;  // whether layout.error_rate is an estimate
  // Clonal groups from the chain: phases per position of layout.order, each parent's length.
  bool chain_phases = false;
  std::vector<Phase> phases;
  double parental_cm[2] = {0, 0};
};

MultipointOptions OptionsFor(const MapPipelineSettings& settings, const MapToolInput& data) {
  MultipointOptions options;
  options.error_rate = settings.error_rate;
  options.mapping_function = data.mapping_function;
  return options;
}

// The one step that gives a group its order and distances: a start order from the pairs, then
// the group's map in that order. `markers` are 1-based input numbers.
GroupMapping MapOneGroup(const PairTable& pairs, const MapPipelineSettings& settings, const MapToolInput& data,
                         const std::vector<int32_t>& markers, UniformStream& random, bool* framed) {
  std::vector<int32_t> kinds;
  for (const int32_t m : markers) kinds.push_back(data.markers.categories[static_cast<size_t>(m - 1)]);
  const std::vector<int32_t> start = StartOrder(pairs, settings.ordering, markers, kinds, random, settings.log, framed);
  // Bi-parental groups take their order and distances from the likelihood of all their markers
  // at once, with an error model: two-point frequencies alone let each genotyping error add two
  // crossovers and cannot tell how little a dominant and a recessive neighbour share.
  if (settings.tool_code == kMapToolCode && markers.size() >= 2) {
    GroupLayout layout = MapGroupMultipoint(data.population_type, data.population_size, GroupGenotypes(data, markers),
                                            kinds, start, OptionsFor(settings, data));
    if (layout.ok) return {std::move(layout), "multipoint likelihood with an error model", true, false, {}, {}};
  }
  // Pure lines likewise, the founder a line carries being the chain's state.
  if (settings.tool_code == kPureLineToolCode && markers.size() >= 2) {
    GroupLayout layout = MapFounderGroup(data.population_type, data.population_size, GroupGenotypes(data, markers),
                                         kinds, start, OptionsFor(settings, data));
    if (layout.ok) return {std::move(layout), "multipoint likelihood of the founders with an error model", true, false, {}, {}};
  }
  // Clonal groups likewise, with both parents' meioses and phases in the chain: pairs of markers
  // that share no parent (A=B beside C=D) say nothing about their distance, the chromosome does.
  if (settings.tool_code == kClonalToolCode && markers.size() >= 2) {
    ClonalGroupMap clonal = MapClonalGroup(data.population_size, GroupGenotypes(data, markers), kinds, start,
                                           OptionsFor(settings, data));
    if (clonal.map.ok) {
      return {std::move(clonal.map), "multipoint likelihood of both parents' meioses with an error model", true, true,
              std::move(clonal.phases), {clonal.first_length_cm, clonal.second_length_cm}};
    }
  }
  return {GroupMapFromTwoPoint(pairs, data.mapping_function, markers, start),
          "two-point frequencies of neighbouring markers", false, false, {}, {}};
}

// The groups' layouts laid end to end: the linked markers in map order with their positions,
// the size of each group that kept a marker, and the markers that left their groups.
struct PlacedGroups {
  std::vector<int32_t> order, group_size, dropped;
  std::vector<float> position;
  std::string unframed;  // groups with too few co-dominant markers for a frame
  std::string method;    // what made the groups' distances
  double error_sum = 0.0;  // estimated error rates weighed by the markers placed with them
  int64_t error_weight = 0;
  std::vector<GenotypeCell> suspects;
  // Clonal: phase signs of the placed markers and each group's parental lengths, while every
  // group of two or more markers came from the chain.
  bool chain_phases = true;
  std::vector<int8_t> phase_signs[2];
  std::vector<float> parental_cm[2];
};

// Each position's phase in each parent as a sign against the group's first marker that
// segregates in that parent.
void AddPhaseSigns(const MapToolInput& data, const std::vector<int32_t>& markers, const GroupMapping& mapping,
                   PlacedGroups& placed) {
  const GroupLayout& layout = mapping.layout;
  for (int parent = 0; parent < 2; ++parent) {
    int first = -1;
    for (std::size_t k = 0; k < layout.order.size(); ++k) {
      const int32_t category = data.markers.categories[static_cast<size_t>(markers[static_cast<size_t>(layout.order[k])] - 1)];
      int8_t sign = 1;
      if (mapping.chain_phases && SegregatesIn(category, parent)) {
        const int phase = parent == 0 ? mapping.phases[k].first : mapping.phases[k].second;
        if (first < 0) first = phase;
        sign = phase == first ? 1 : -1;
      }
      placed.phase_signs[parent].push_back(sign);
    }
    if (!layout.order.empty()) placed.parental_cm[parent].push_back(static_cast<float>(mapping.parental_cm[parent]));
  }
  if (!mapping.chain_phases && layout.order.size() >= 2) placed.chain_phases = false;
}

// `carrier`: by marker, the representative it rides with in a binned run (BinCarriers), or empty.
PlacedGroups PlaceGroups(const PairTable& pairs, const MapPipelineSettings& settings, const MapToolInput& data,
                         const MapModel& map, const std::vector<int32_t>& carrier, UniformStream& random) {
  PlacedGroups placed;
  const std::vector<int64_t> starts = GroupStarts(map.num_groups, map.group_size.data());
  for (int32_t g = 0; g < map.num_groups; ++g) {
    const auto from = map.order.begin() + starts[static_cast<size_t>(g)];
    const GroupBins bins = SplitGroup(std::vector<int32_t>(from, from + map.group_size[static_cast<size_t>(g)]), carrier);
    bool framed = false;
    GroupMapping mapping = MapOneGroup(pairs, settings, data, bins.mapped, random, &framed);
    const std::vector<int32_t> markers = CarryRiders(bins, mapping.layout, mapping.chain_phases ? &mapping.phases : nullptr);
    const GroupLayout& layout = mapping.layout;
    if (placed.method.find(mapping.method) == std::string::npos)
      placed.method += (placed.method.empty() ? "" : ", ") + std::string(mapping.method);
    if (settings.ordering.around_frame && !framed && markers.size() >= 2)
      placed.unframed += (placed.unframed.empty() ? "" : ", ") + std::to_string(g + 1);
    for (size_t k = 0; k < layout.order.size(); ++k) {
      placed.order.push_back(markers[static_cast<size_t>(layout.order[k])]);
      placed.position.push_back(static_cast<float>(layout.positions_cm[k]));
    }
    for (const int32_t k : layout.dropped) placed.dropped.push_back(markers[static_cast<size_t>(k)]);
    if (settings.tool_code == kClonalToolCode) AddPhaseSigns(data, markers, mapping, placed);
    if (!layout.order.empty()) placed.group_size.push_back(static_cast<int32_t>(layout.order.size()));
    for (const SuspectCall& call : layout.suspects)
      placed.suspects.push_back({markers[static_cast<size_t>(call.marker)], call.individual});
    if (mapping.estimates_error_rate) {
      placed.error_sum += layout.error_rate * static_cast<double>(layout.order.size());
      placed.error_weight += static_cast<int64_t>(layout.order.size());
    }
  }
  return placed;
}

// The grouped `map` rebuilt from the placed groups: the dropped markers join the unlinked ones
// and a group left empty is gone. Every group counts as ordered and rippled.
void RebuildModel(const PlacedGroups& placed, MapModel& map, std::vector<int32_t>& unlinked) {
  unlinked = placed.dropped;
  std::vector<int32_t> deleted;
  for (int64_t k = map.num_mapped; k < map.num_markers; ++k) {
    const int32_t m = map.order[static_cast<size_t>(k)];
    (map.group[static_cast<size_t>(m - 1)] == 0 ? unlinked : deleted).push_back(m);
  }
  map.order = placed.order;
  map.order.insert(map.order.end(), unlinked.begin(), unlinked.end());
  map.order.insert(map.order.end(), deleted.begin(), deleted.end());
  map.position = placed.position;
  map.position.resize(static_cast<size_t>(map.num_markers), 0.0f);
  std::fill(map.group.begin(), map.group.end(), 0);
  for (size_t g = 0, k = 0; g < placed.group_size.size(); ++g)
    for (int32_t i = 0; i < placed.group_size[g]; ++i, ++k)
      map.group[static_cast<size_t>(map.order[k] - 1)] = static_cast<int32_t>(g + 1);
  for (const int32_t m : deleted) map.group[static_cast<size_t>(m - 1)] = -1;
  map.num_groups = static_cast<int32_t>(placed.group_size.size());
  map.num_mapped = static_cast<int32_t>(placed.order.size());
  map.num_unlinked = static_cast<int32_t>(unlinked.size());
  map.group_size = placed.group_size;
  map.group_status.assign(placed.group_size.size(), kGroupRippled);
  map.map_state = kMapRippled;
}

// Orders and places every group of the grouped `map`, then rebuilds it from their layouts.
void MapGroups(const PairTable& pairs, const MapPipelineSettings& settings, const MapToolInput& data, MapModel& map,
               UniformStream& random, MapPipelineRecord& record) {
  using Binning = MapPipelineSettings::Binning;
  std::vector<int32_t> carrier;
  if (settings.binning == Binning::kOn || (settings.binning == Binning::kAuto && data.num_markers >= kBinFrom))
    carrier = BinCarriers(data, settings.bin_tolerance, record.bins);
  const PlacedGroups placed = PlaceGroups(pairs, settings, data, map, carrier, random);
  record.ordering = settings.ordering;
  record.distances = placed.method;
  if (placed.error_weight > 0) {
    record.error_rate = placed.error_sum / static_cast<double>(placed.error_weight);
    record.error_rate_fixed = settings.error_rate.has_value();
  }
  record.dropped = placed.dropped;
  record.suspects = placed.suspects;
  if (settings.tool_code == kClonalToolCode && placed.chain_phases)
    for (int parent = 0; parent < 2; ++parent) {
      record.phase_signs[parent] = placed.phase_signs[parent];
      record.parental_lengths_cm[parent] = placed.parental_cm[parent];
    }
  if (settings.ordering.around_frame) {
    record.ordering_note = "co-dominant markers ordered first, the others placed where their pairs with them fit best";
    if (!placed.unframed.empty())
      record.ordering_note += "; too few co-dominant markers for that in group " + placed.unframed + " (tour search there)";
  }
  RebuildModel(placed, map, record.unlinked);
}

void DescribeGroups(const MapModel& map, const std::vector<std::string>& names, MapPipelineRecord& record) {
  const std::vector<int64_t> starts = GroupStarts(map.num_groups, map.group_size.data());
  for (int32_t g = 0; g < map.num_groups; ++g) {
    PipelineGroup group;
    group.name = Trimmed(names[static_cast<size_t>(g)]);
    const size_t from = static_cast<size_t>(starts[static_cast<size_t>(g)]);
    const size_t to = from + static_cast<size_t>(map.group_size[static_cast<size_t>(g)]);
    group.markers.assign(map.order.begin() + static_cast<std::ptrdiff_t>(from), map.order.begin() + static_cast<std::ptrdiff_t>(to));
    group.positions_cm.assign(map.position.begin() + static_cast<std::ptrdiff_t>(from), map.position.begin() + static_cast<std::ptrdiff_t>(to));
    record.groups.push_back(std::move(group));
  }
}

}  // namespace

MapPipelineRecord RunMapPipeline(const MapPipelineSettings& settings, UniformStream& random) {
  MapPipelineRecord record;
  record.tool_code = settings.tool_code;
  Stopwatch clock;
  MapToolInput data;
  if (!ReadInput(settings, data, record) || !EnsurePairFile(settings, data, random, record)) return record;
  record.stage_seconds.emplace_back("read and pairs", clock.Lap());
  PairStoreFile store;
  if (!store.Open(record.pair_file, PairRecordLength(settings.tool_code), data.mapping_function, settings.store_watch)) {
    record.failure = -1;
    record.failure_text = "cannot read the pairwise file " + record.pair_file;
    return record;
  }
  MapModel map;
  GroupByLod(store.Table(), settings, data.anchors, map, record, [&store](int64_t records) { store.Passed(records); });
  store.Passed(-1);
  record.stage_seconds.emplace_back("grouping", clock.Lap());
  if (settings.check_pairs && !settings.check_pairs(record, data.anchors)) {
    record.failure = -1;
    record.failure_text = "stopped by the checks of the pairs";
    record.stopped_by_check = true;
    return record;
  }
  MapGroups(store.Table(), settings, data, map, random, record);
  record.stage_seconds.emplace_back("ordering and distances", clock.Lap());
  if (settings.store_watch != nullptr && settings.store_watch->TakeDamage()) {
    record.failure = -1;
    record.failure_text = "the pairwise file " + record.pair_file + " was cut short while the map was read from it";
    return record;
  }
  std::vector<std::string> names(static_cast<size_t>(map.num_groups), std::string(19, ' '));
  NameGroups(map.num_groups, map.group_status.data(), names);
  // An imported file's groups carry the names of the chromosomes most of their markers come from.
  if (const std::optional<LocusTable> loci = ReadLocusTableBeside(settings.input_path))
    NameGroupsByChromosome(*loci, record.marker_names, map.group, names[0].size(), names);
  DescribeGroups(map, names, record);
  WriteResults(settings, data, map, names, store.Table(), random, record);
  record.stage_seconds.emplace_back("reports and scan", clock.Lap());
  return record;
}

}  // namespace gae
