#include "consensus_run.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "engine/order_group.h"
#include "vocabulary/message_code.h"
#include "frame/name_codes.h"
#include "frame/tool_profile.h"
#include "front_end_map.h"
#include "gaengine.h"
#include "library_output.h"
#include "pipeline/consensus_order.h"
#include "pipeline/group_layout.h"
#include "pipeline/pair_fingerprint.h"
#include "twopoint/cmp_pairwise_file.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/pair_store_writer.h"
#include "input/consensus_input.h"
#include "report/text_file.h"
#include "run_guard.h"
#include "vocabulary/run_log.h"
#include "run_settings.h"
#include "user_errors.h"

namespace gaecli {

namespace {

// What CheckErrorCMP tells about the input maps.
struct ConsensusCheck {
  int space_type = 0, space_unit = 0, num_maps = 0, num_markers = 0;
  std::vector<int> name_codes, maps_holding, places;
  int Place(int marker, int map) const { return places[static_cast<size_t>(map) * num_markers + marker]; }
};

// The names and lengths of the input maps, for the summary only: the exports hand back the
// places of the markers, not their positions. The file is read again by the library's reader.
struct InputMap {
  std::string name;
  float length = 0.0f;  // last position less first, cM
};

std::vector<InputMap> ReadInputMaps(const std::string& path) {
  gae::InputFile in;
  gae::ConsensusInput data;
  std::vector<InputMap> maps;
  if (in.Open(path) && gae::ReadConsensusInput(in, data)) {
    for (size_t c = 0; c < data.maps.chromosomes.size(); ++c) {
      const std::vector<float>& p = data.maps.chromosomes[c].positions;
      const std::string& name = data.maps.chromosome_names[c];
      maps.push_back({name.substr(0, name.find_last_not_of(' ') + 1), p.empty() ? 0.0f : p.back() - p.front()});
    }
  }
  gae::MessageCode() = 0;  // the check has already passed this file
  return maps;
}

// Spearman's rank correlation between the order of `map` and the consensus order, over the
// markers of that map that the consensus places; 2 (no value) for fewer than two of them.
double RankCorrelation(const ConsensusCheck& check, int map, const FrontEndMap& consensus) {
  std::vector<std::pair<int, int>> pairs;  // (place on the map, rank in the consensus)
  for (int k = 0; k < consensus.model.num_mapped; ++k) {
    const int place = check.Place(consensus.model.order[k] - 1, map);
    if (place > 0) pairs.push_back({place, k});
  }
  const double n = static_cast<double>(pairs.size());
  if (pairs.size() < 2) return 2.0;
  std::sort(pairs.begin(), pairs.end());  // by place: the map's own ranks are 0, 1, ...
  std::vector<int> consensus_rank(pairs.size());
  for (size_t i = 0; i < pairs.size(); ++i) consensus_rank[i] = pairs[i].second;
  std::vector<int> sorted = consensus_rank;
  std::sort(sorted.begin(), sorted.end());
  double d2 = 0.0;
  for (size_t i = 0; i < pairs.size(); ++i) {
    const double r = static_cast<double>(std::lower_bound(sorted.begin(), sorted.end(), consensus_rank[i]) - sorted.begin());
    d2 += (r - static_cast<double>(i)) * (r - static_cast<double>(i));
  }
  return 1.0 - 6.0 * d2 / (n * (n * n - 1.0));
}

int CheckConsensusFile(const std::string& file, ConsensusCheck& check) {
  const PathArg path(file);
  int status = 0;
  {
    const LibraryOutput quiet;
    CMPFindNumMarkers(path.Len(), path.Data(), &check.space_type, &check.space_unit,
                      &check.num_maps, &check.num_markers, &status);
  }
  if (status != 0) return status;
  if (!DeclaredSizeFits(file, check.num_markers, "markers") ||
      !DeclaredSizeFits(file, static_cast<long long>(check.num_markers) * check.num_maps, "map places"))
    return kRefusedByCommand;
  check.name_codes.assign(static_cast<size_t>(check.num_markers) * 35, 0);
  check.maps_holding.assign(check.num_markers, 0);
  check.places.assign(static_cast<size_t>(check.num_markers) * check.num_maps, 0);
  // A pairwise file of the right size is reused by the library: clear it when the maps changed.
  const std::string lrd = gae::PairStoreName(file);
  const std::string fingerprint =
      gae::PairFingerprint("CMP", gae::ProfileOf(gae::MapTool::kCMP).record_length, gae::ConsensusFingerprint(file));
  if (const std::string reason = gae::ClearStalePairFile(lrd, fingerprint); !reason.empty())
    std::printf("%s is computed again: %s.\n", lrd.c_str(), reason.c_str());
  {
    const LibraryOutput quiet;
    CheckErrorCMP(path.Len(), path.Data(), check.num_maps, check.num_markers, check.name_codes.data(),
                  check.maps_holding.data(), check.places.data(), &status);
  }
  if (status == 0) gae::RecordPairFileSource(lrd, fingerprint);
  return status;
}

void PrintSummary(const std::string& file, const ConsensusCheck& check, const FrontEndMap& map) {
  const long shared = std::count_if(check.maps_holding.begin(), check.maps_holding.end(),
                                    [](int held) { return held >= 2; });
  const gae::MapModel& m = map.model;
  float length = 0.0f;
  int start = 0;
  for (int g = 0; g < m.num_groups; ++g) {
    const int size = m.group_size[g];
    if (size > 0) length += m.position[start + size - 1] - m.position[start];
    start += size;
  }
  std::printf("\nConsensus of %s\n", file.c_str());
  // The ordering's starts are fixed for a consensus; which ones are drawn rests on the seed.
  PrintRandomSettings(gae::kConsensusStarts, true);
  std::printf("  Markers           %d\n", check.num_markers);
  std::printf("  Input maps        %d\n", check.num_maps);
  std::printf("  Shared markers    %ld (on two maps or more)\n", shared);
  std::printf("  Consensus length  %.1f cM\n", length);
  // The direction of a consensus is arbitrary: it is read the way most maps run, so that a map
  // that disagrees stands out by a low or negative correlation.
  std::vector<double> rho(check.num_maps);
  double sum = 0.0;
  for (int c = 0; c < check.num_maps; ++c) {
    rho[c] = RankCorrelation(check, c, map);
    if (rho[c] <= 1.0) sum += rho[c];
  }
  const double sign = sum < 0.0 ? -1.0 : 1.0;
  const std::vector<InputMap> inputs = ReadInputMaps(file);
  if (inputs.size() != static_cast<size_t>(check.num_maps)) return;
  std::printf("  %-20s %8s %10s %16s\n", "Input map", "markers", "length", "rank correlation");
  for (int c = 0; c < check.num_maps; ++c) {
    int held = 0;
    for (int m = 0; m < check.num_markers; ++m) held += check.Place(m, c) > 0;
    std::printf("  %-20s %8d %7.1f cM", inputs[c].name.c_str(), held, inputs[c].length);
    if (rho[c] <= 1.0) std::printf(" %16.3f\n", sign * rho[c]);
    else std::printf(" %16s\n", "-");
  }
  const std::string stem = gae::ResultStem(file);
  std::printf("  Files written     %s.LRD %s.sum %s.dis\n", stem.c_str(), stem.c_str(), stem.c_str());
}

int StageFailed(const std::string& file, const char* stage, int status) {
  std::fprintf(stderr, "%s: %s stopped with status %d (see CMP.log)\n", file.c_str(), stage, status);
  return 1;
}

}  // namespace

int RunConsensus(const std::string& file) {
  RunScope scope;
  if (!scope.Begin(file, {".sum", ".dis"})) return 1;
  ConsensusCheck check;
  if (const int status = CheckConsensusFile(file, check); status != 0) {
    ExplainRefusal(file, gae::ProfileOf(gae::MapTool::kCMP).tool_code, status);
    return 1;
  }
  // The settled defaults of a whole consensus run, as the library's CMP profile holds them:
  // one group, the shared markers ordered first by distance, a window of five.
  const gae::ToolProfile& tool = gae::ProfileOf(gae::MapTool::kCMP);
  const gae::StageDefaults& d = tool.defaults;
  LogRunSettings(tool.tool_code, gae::kConsensusStarts);
  FrontEndMap map;
  gae::MapModel& m = map.model;
  gae::AllocateMapState(m, check.num_markers);
  int status = 0;
  std::optional<LibraryOutput> quiet(std::in_place);
  MAPGrouping(tool.tool_code, d.grouping_method, d.grouping_by, d.threshold, m.num_markers,
              check.maps_holding.data(), m.group.data(), &status);
  if (status != 0) return StageFailed(file, "grouping", status);
  map.BuildFromGroups();
  const bool large = std::any_of(m.group_size.begin(), m.group_size.end(),
                                 [](int32_t size) { return size >= gae::kBackboneFrom; });
  if (large) {
    // Groups of thousands: the library's backbone ordering instead of the export's search.
    gae::PairStoreFile store;
    if (!store.Open(gae::PairStoreName(file), tool.record_length, gae::kCmpMappingFunction))
      return StageFailed(file, "ordering", -1);
    gae::UniformStream random;
    gae::OrderConsensusGroups(store.Table(), d.ordering_method, check.maps_holding.data(), m, random);
  } else {
    MAPOrderingAll(tool.tool_code, d.ordering_method, d.ordering_by, d.ordering_option,
                   d.ordering_param1, d.ordering_param2, m.num_markers, m.num_groups,
                   m.group_size.data(), m.group_status.data(), &m.map_state,
                   check.maps_holding.data(), m.group.data(), m.order.data(), m.position.data(),
                   &status);
    if (status != 0) return StageFailed(file, "ordering", status);
  }
  MAPRipplingAll(tool.tool_code, d.rippling_by, d.window_size, m.num_markers, m.num_groups,
                 m.group_size.data(), m.group_status.data(), &m.map_state, m.group.data(),
                 m.order.data(), m.position.data(), &status);
  if (status != 0) return StageFailed(file, "rippling", status);
  const std::vector<int> names = gae::GroupNamesToCodes(map.Names());
  const PathArg path(file);
  const gae::LogSession output_log(tool.letters);  // a report that cannot be written is named there
  CMPOutput(path.Len(), path.Data(), m.num_markers, m.num_mapped, m.num_unlinked, m.num_groups,
            names.data(), m.group_size.data(), m.order.data(), m.position.data(), 1);
  quiet.reset();
  if (!ResultsWritten(file, tool.letters)) return 1;
  PrintSummary(file, check, map);
  return 0;
}

}  // namespace gaecli
