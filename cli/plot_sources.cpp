#include "plot_sources.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <fstream>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "vocabulary/fixed_format.h"
#include "frame/process_state.h"
#include "input/header_fields.h"
#include "input/map_section.h"
#include "input/map_tool_reader.h"
#include "plot_group_names.h"
#include "plot_sum_file.h"
#include "prep/locus_table.h"
#include "report/text_file.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

constexpr std::size_t kPrintedName = 19;  // a summary cuts marker names to this

std::string PrintedName(const std::string& name) {
  return gae::fmt::Trim(gae::fmt::TrimRight(name).substr(0, kPrintedName));
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

bool ReadFile(const std::string& path, std::string& text, std::string& error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = path + " is missing: run the map first";
    return false;
  }
  std::ostringstream all;
  all << in.rdbuf();
  text = all.str();
  return true;
}

bool ReadSum(const std::string& path, SumFile& sum, std::string& error) {
  std::string text;
  if (!ReadFile(path, text, error)) return false;
  if (!ParseSumText(text, sum, error)) {
    error = path + ": " + error;
    return false;
  }
  return true;
}

struct InputMarkers {
  std::vector<std::string> names;           // in the pair store's numbering
  std::vector<std::string> map_names;       // a consensus file's input maps
  std::vector<gae::ChromosomeRecord> maps;
};

bool ReadInputMarkers(const std::string& path, gae::MapTool tool, InputMarkers& out, std::string& error) {
  gae::InputFile in;
  if (!in.Open(path)) {
    error = path + " does not exist";
    return false;
  }
  gae::MessageCode() = 0;
  if (tool == gae::MapTool::kCMP) {
    const int kConsensus = gae::ProfileOf(tool).tool_code;
    int32_t space_type = 0, space_unit = 0, num_chs = 0;
    gae::MapSection section;
    if (gae::ReadHeaderField(in, gae::HeaderField::kSpaceType, kConsensus, space_type) &&
        gae::ReadHeaderField(in, gae::HeaderField::kSpaceUnit, kConsensus, space_unit) &&
        gae::ReadHeaderField(in, gae::HeaderField::kNumChs, kConsensus, num_chs) &&
        gae::ReadMapSection(in, kConsensus, num_chs, space_type, space_unit, section)) {
      out.names = section.distinct.names;
      out.map_names = section.chromosome_names;
      out.maps = section.chromosomes;
    }
  } else {
    gae::MapToolInput data;
    gae::ReadMapToolInput(in, gae::ProfileOf(tool).tool_code, data);
    out.names = data.markers.names;
  }
  if (gae::MessageCode() != 0) {
    error = path + " does not read (message code " + std::to_string(gae::MessageCode()) + ")";
    gae::MessageCode() = 0;
    return false;
  }
  return true;
}

// The whole input names of a summary's markers, in its order. A summary cuts names to 19
// characters; names cut alike go to their markers in input order over the whole file.
std::vector<std::string> WholeNames(const SumFile& sum, const std::vector<std::string>& input_names) {
  std::vector<std::string> printed;
  for (const SumMarker& m : sum.markers) printed.push_back(m.name);
  const std::vector<int64_t> numbers = MatchMarkerNumbers(printed, input_names);
  for (std::size_t k = 0; k < numbers.size(); ++k)
    if (numbers[k] > 0) printed[k] = gae::fmt::Trim(input_names[numbers[k] - 1]);
  return printed;
}

// One map of a group, its markers named as the input file names them.
// `whole`: WholeNames of the summary.
ChartBar BarOf(const SumFile& sum, int32_t group, const std::string& title, const std::vector<std::string>& whole) {
  ChartBar bar{title, {}};
  for (std::size_t k = 0; k < sum.markers.size(); ++k)
    if (sum.markers[k].group == group) bar.ticks.push_back({whole[k], sum.markers[k].position});
  return bar;
}

// The consensus of each group beside every input map that shares a marker with it, two maps
// to a block with the consensus between them, so that each map is joined to it directly.
void AddConsensusBlocks(const std::string& group_name, const ChartBar& consensus, const InputMarkers& input,
                        std::vector<ChartBlock>& blocks) {
  std::unordered_set<std::string> names;
  for (const ChartTick& t : consensus.ticks) names.insert(t.name);
  std::vector<ChartBar> shared;
  for (std::size_t c = 0; c < input.maps.size(); ++c) {
    ChartBar bar{gae::fmt::Trim(input.map_names[c]), {}};
    bool shares = false;
    for (int32_t k = 0; k < input.maps[c].NumMarkers(); ++k) {
      bar.ticks.push_back({gae::fmt::Trim(input.maps[c].marker_names[k]), input.maps[c].positions[k]});
      shares = shares || names.count(bar.ticks.back().name) > 0;
    }
    if (shares) shared.push_back(std::move(bar));
  }
  if (shared.empty()) blocks.push_back({group_name, {consensus}});
  for (std::size_t k = 0; k < shared.size(); k += 2) {
    ChartBlock block{group_name, {shared[k], consensus}};
    if (k + 1 < shared.size()) block.bars.push_back(shared[k + 1]);
    blocks.push_back(std::move(block));
  }
}

std::string FileName(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Group names and the markers' loci from the table beside the input, when there is one.
void NameTheGroups(const std::string& input_path, const SumFile& sum, const std::vector<std::string>& input_names,
                   PlotSources& out) {
  for (const SumGroup& g : sum.groups) {
    out.group_numbers.push_back(g.number);
    out.report_group_names.push_back(g.name);
  }
  out.group_names = out.report_group_names;
  out.group_chromosomes.assign(sum.groups.size(), "");
  const std::optional<gae::LocusTable> table = gae::ReadLocusTableBeside(input_path);
  if (!table) return;
  std::unordered_map<std::string, const gae::LocusRow*> by_name;
  for (const gae::LocusRow& row : table->rows) by_name.emplace(gae::fmt::Trim(row.marker), &row);
  std::vector<std::vector<std::string>> chromosomes(sum.groups.size());
  std::unordered_map<int32_t, std::size_t> index;
  for (std::size_t k = 0; k < sum.groups.size(); ++k) index[sum.groups[k].number] = k;
  for (std::size_t m = 0; m < sum.markers.size(); ++m) {
    PlotSources::Locus locus;
    locus.group = index[sum.markers[m].group];
    locus.cm = sum.markers[m].position;
    const auto found = by_name.find(gae::fmt::Trim(input_names[out.heat.markers[m] - 1]));
    if (found != by_name.end()) {
      locus.chromosome = found->second->chromosome;
      locus.position = found->second->position;
    }
    chromosomes[locus.group].push_back(locus.chromosome);
    out.loci.push_back(std::move(locus));
  }
  out.group_names = NameGroups(chromosomes, out.report_group_names, &out.group_chromosomes);
}

}  // namespace

bool KeepOneGroup(const std::string& which, PlotSources& s, std::string& error) {
  std::size_t chosen = s.group_names.size();
  for (std::size_t k = 0; k < s.group_names.size() && chosen == s.group_names.size(); ++k)
    if (which == s.group_names[k]) chosen = k;
  for (std::size_t k = 0; k < s.group_names.size() && chosen == s.group_names.size(); ++k)
    if (which == s.report_group_names[k] || which == std::to_string(s.group_numbers[k])) chosen = k;
  if (chosen == s.group_names.size()) {
    error = "no group " + which + "; the groups are";
    for (std::size_t k = 0; k < s.group_names.size(); ++k)
      error += (k == 0 ? " " : ", ") + std::to_string(s.group_numbers[k]) + " " + s.group_names[k];
    return false;
  }
  std::vector<ChartBlock> blocks;
  for (std::size_t b = 0; b < s.chart.blocks.size(); ++b)
    if (s.block_group[b] == chosen) blocks.push_back(std::move(s.chart.blocks[b]));
  s.chart.blocks = std::move(blocks);
  s.block_group.assign(s.chart.blocks.size(), 0);
  const std::string& name = s.group_names[chosen];
  s.chart.title = s.file_name + ": group " + name;
  // The group's run of markers in map order.
  std::size_t first = 0;
  for (std::size_t k = 0; k < chosen; ++k) first += static_cast<std::size_t>(s.heat.groups[k].size);
  const std::size_t size = static_cast<std::size_t>(s.heat.groups[chosen].size);
  auto cut = [&](auto& v) {
    if (v.size() >= first + size) v = std::vector(v.begin() + first, v.begin() + first + size);
  };
  cut(s.heat.markers);
  cut(s.heat.names);
  cut(s.loci);
  for (PlotSources::Locus& l : s.loci) l.group = 0;
  s.heat.groups = {s.heat.groups[chosen]};
  s.heat.title = s.file_name + ", group " + name + ": pairwise recombination frequency" +
                 (s.heat.lower_is_lod ? " and LOD score" : "");
  s.group_numbers = {s.group_numbers[chosen]};
  s.report_group_names = {s.report_group_names[chosen]};
  s.group_names = {name};
  s.group_chromosomes = {s.group_chromosomes[chosen]};
  return true;
}

bool MapToolOf(const std::string& word_or_path, gae::MapTool& tool) {
  std::string word = Upper(word_or_path);
  if (word.size() > 4 && word[word.size() - 4] == '.') word = word.substr(word.size() - 3);
  for (gae::MapTool t : {gae::MapTool::kMAP, gae::MapTool::kCDM, gae::MapTool::kPLM, gae::MapTool::kCMP}) {
    if (word == gae::ProfileOf(t).letters) {
      tool = t;
      return true;
    }
  }
  return false;
}
std::vector<int64_t> MatchMarkerNumbers(const std::vector<std::string>& printed_names,
                                        const std::vector<std::string>& input_names) {
  std::unordered_map<std::string, std::deque<int64_t>> numbers;
  for (std::size_t i = 0; i < input_names.size(); ++i)
    numbers[PrintedName(input_names[i])].push_back(static_cast<int64_t>(i) + 1);
  std::vector<int64_t> matched;
  for (const std::string& name : printed_names) {
    auto found = numbers.find(name);
    if (found == numbers.end() || found->second.empty()) {
      matched.push_back(-1);
    } else {
      matched.push_back(found->second.front());
      found->second.pop_front();
    }
  }
  return matched;
}

bool LoadPlotSources(const std::string& input_path, gae::MapTool tool, PlotSources& out, std::string& error) {
  out = PlotSources{};
  out.stem = gae::ResultStem(input_path);
  out.lrd_path = gae::PairStoreName(input_path);
  // The clonal store keeps both parents' values beside the combined ones.
  out.record_length = gae::ProfileOf(tool).record_length;
  SumFile sum;
  InputMarkers input;
  if (!ReadSum(out.stem + ".sum", sum, error) || !ReadInputMarkers(input_path, tool, input, error)) return false;

  const std::string name = FileName(input_path);
  out.file_name = name;
  HeatMapData& heat = out.heat;
  std::vector<std::string> printed;
  for (const SumMarker& m : sum.markers) printed.push_back(m.name);
  heat.markers = MatchMarkerNumbers(printed, input.names);
  for (std::size_t k = 0; k < printed.size(); ++k) {
    if (heat.markers[k] < 0) {
      error = "marker " + printed[k] + " of " + out.stem + ".sum is not in " + input_path;
      return false;
    }
  }
  heat.names = WholeNames(sum, input.names);
  NameTheGroups(input_path, sum, input.names, out);

  std::vector<ChartBlock>& blocks = out.chart.blocks;
  const std::vector<std::string> whole = WholeNames(sum, input.names);
  // A pure-line map is one map, like a bi-parental one.
  if (tool == gae::MapTool::kMAP || tool == gae::MapTool::kPLM) {
    out.chart.title = name + ": " + std::to_string(sum.markers.size()) + " markers on " +
                      std::to_string(sum.groups.size()) + " linkage groups";
    for (std::size_t k = 0; k < sum.groups.size(); ++k)
      blocks.push_back({out.group_names[k], {BarOf(sum, sum.groups[k].number, out.group_names[k], whole)}});
  } else if (tool == gae::MapTool::kCDM) {
    SumFile first, second;
    if (!ReadSum(out.stem + ".sumf", first, error) || !ReadSum(out.stem + ".summ", second, error)) return false;
    out.chart.title = name + ": combined map between the maps of the two parents";
    const std::vector<std::string> whole_first = WholeNames(first, input.names), whole_second = WholeNames(second, input.names);
    for (std::size_t k = 0; k < sum.groups.size(); ++k) {
      const int32_t number = sum.groups[k].number;
      blocks.push_back({out.group_names[k], {BarOf(first, number, "Parent 1", whole_first),
                                             BarOf(sum, number, "Combined", whole),
                                             BarOf(second, number, "Parent 2", whole_second)}});
    }
  } else {
    out.chart.title = name + ": consensus map beside each of the " + std::to_string(input.maps.size()) + " input maps";
    for (std::size_t k = 0; k < sum.groups.size(); ++k) {
      AddConsensusBlocks(out.group_names[k], BarOf(sum, sum.groups[k].number, "Consensus", whole), input, blocks);
      out.block_group.resize(blocks.size(), k);
    }
  }
  if (out.block_group.size() != blocks.size()) {
    out.block_group.clear();
    for (std::size_t k = 0; k < blocks.size(); ++k) out.block_group.push_back(k);
  }

  heat.title = tool == gae::MapTool::kCMP ? name + ": pairwise recombination frequency"
                                     : name + ": pairwise recombination frequency and LOD score";
  heat.lower_is_lod = tool != gae::MapTool::kCMP;
  for (std::size_t k = 0; k < sum.groups.size(); ++k) heat.groups.push_back({out.group_names[k], sum.groups[k].num_markers});
  if (!gae::PairStoreIsComplete(out.lrd_path, static_cast<int64_t>(input.names.size()), out.record_length)) {
    out.pairs_problem = out.lrd_path + " does not hold the pairs of the " + std::to_string(input.names.size()) +
                        " markers of " + input_path;
  }
  return true;
}

}  // namespace gaecli
