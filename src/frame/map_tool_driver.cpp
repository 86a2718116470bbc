#include "frame/map_tool_driver.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engine/grouping_stage.h"
#include "engine/map_state.h"
#include "engine/ordering_stage.h"
#include "engine/rippling_stage.h"
#include "vocabulary/cpu_clock.h"
#include "frame/entry.h"
#include "vocabulary/frame_codes.h"
#include "frame/name_codes.h"
#include "input/find_num_markers.h"
#include "report/text_file.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

namespace {

int* StatusOrScratch(int* status, int& scratch) { return status != nullptr ? status : &scratch; }

void PrintTime(std::string_view name, float t1, float t2) {
  MessageCode() = kCpuTime;
  PrintFrameMessage(name, t1, t2, 0);
}

// The sizes read inside an open log session, ending with the FindNumMarkers line. False when
// the run has to stop (`status` holds why).
bool ReadSizes(const ToolProfile& p, int path_len, const char* path, const MapSizeResults& out,
               int* status) {
  MessageCode() = 0;
  const std::string file_path = EntryPath(path_len, path);
  InputFile in;
  if (!in.Open(file_path)) {
    ReportMissingInput(file_path, p.find_num_markers_name, status);
    return false;
  }
  if (p.header_code != 0) ReadMarkerCountHeader(in, p.header_code, out.num_markers);
  else ReadConsensusSizes(in, out.space_type, out.space_unit, out.num_chs, out.num_markers);
  in.Close();
  if (MessageCode() != 0) {
    ReportEntryFailure(p.find_num_markers_name, status);
    return false;
  }
  ReportEntrySuccess(p.find_num_markers_name);
  return true;
}

// Names the store in the process state, for the stages that follow, and fills it.
bool WritePairFile(MapToolPolicy& policy, const std::string& path, int threads) {
  PairStoreSettings& settings = Process().pair_store;
  settings.lrd_name = PairStoreName(path);
  settings.record_length = policy.Profile().record_length;
  settings.mapping_function = policy.StoreMappingFunction();
  settings.expected_records = PairCount(policy.NumMarkers());
  // An input named like its pairwise file (cross.LRD) would be replaced by it.
  if (SameFile(settings.lrd_name, path)) {
    ReportSkippedResults({settings.lrd_name});
    return false;
  }
  return policy.WritePairs(settings.lrd_name, threads, Process().random);
}

// The caller's arrays must describe a map of the markers read, or the reports would look up
// names and pairs that do not exist. Every count is checked against the others before any
// array is read by it: a host passing a wild count must get the failure line, not a crash.
bool Describes(const FinishedMap& map, int32_t markers_read) {
  const int64_t n = map.num_markers;
  if (n != markers_read || map.num_mapped < 0 || map.num_unlinked < 0 ||
      int64_t{map.num_mapped} + map.num_unlinked > n || map.num_groups < 0 ||
      map.num_groups > n)
    return false;
  if (map.order == nullptr || (map.num_mapped > 0 && map.position == nullptr) ||
      (map.num_groups > 0 && (map.group_size == nullptr || map.group_name_codes == nullptr)))
    return false;
  int64_t linked = 0;
  for (int g = 0; g < map.num_groups && linked <= map.num_mapped; ++g) {
    if (map.group_size[g] < 0) return false;
    linked += map.group_size[g];
  }
  if (linked != map.num_mapped) return false;
  for (int i = 0; i < map.num_markers; ++i)
    if (map.order[i] < 1 || map.order[i] > map.num_markers) return false;
  return true;
}

// The writing half of an output export, on data already read.
void WriteChecked(MapToolPolicy& policy, const std::string& file_path, const FinishedMap& map,
                  const OutputSwitches& switches) {
  if (!Describes(map, policy.NumMarkers())) {
    MessageCode() = kEntryFailed;
    PrintFrameMessage(policy.Profile().output_name, 0.0f, 0.0f, 0);
    return;
  }
  PairStoreFile store;
  if (!OpenProcessPairStore(store)) {
    MessageCode() = kMissingFile;
    PrintMessage(kMissingFile, {MsgArg::Field(Process().pair_store.lrd_name)});
    return;
  }
  ResultFiles files(file_path);
  policy.WriteResults(files, map, switches, store.Table(), Process().random);
  ReportSkippedResults(files.Skipped());
  // A report cut short by a full disk must not pass for a result: the run ends with 1101.
  ReportUnwrittenFiles(files.Failed());
}

// Reads the input for a whole run, timed when the tool times it, keeps its anchors and writes
// the pairwise file. False when the run has to stop, with `status` set and the 1101 line out.
bool ReadAndPair(MapToolPolicy& policy, const std::string& path, MapModel& map, int* status,
                 int threads) {
  const ToolProfile& p = policy.Profile();
  const float t1 = p.timed_read ? CpuSeconds() : 0.0f;
  InputFile in;
  if (!in.Open(path)) {
    ReportMissingInput(path, p.all_by_default_name, status);
    return false;
  }
  policy.Read(in);
  in.Close();
  const float t2 = p.timed_read ? CpuSeconds() : 0.0f;
  if (MessageCode() != 0) {
    ReportEntryFailure(p.all_by_default_name, status);
    return false;
  }
  if (p.timed_read) PrintTime(p.read_data_name, t1, t2);
  const std::span<const int32_t> anchors = policy.WorkingAnchors();
  const size_t n = std::min(map.anchor.size(), anchors.size());
  std::copy(anchors.begin(), anchors.begin() + static_cast<std::ptrdiff_t>(n), map.anchor.begin());
  // A folder that takes no file would lose every result after all the work: refused first.
  if (!FolderTakesFiles(ResultStem(path))) {
    MessageCode() = kEntryFailed;
    PrintFrameMessage(ResultStem(path), 0.0f, 0.0f, 0);
    ReportEntryFailure(p.all_by_default_name, status);
    return false;
  }
  if (!WritePairFile(policy, path, threads)) {
    // Without its pairwise file the run has nothing to group.
    MessageCode() = kEntryFailed;
    ReportEntryFailure(p.all_by_default_name, status);
    return false;
  }
  return true;
}

// Grouping, the group model, ordering and rippling with the tool's defaults. With these fixed
// options no stage rejects its arguments; each runs on what the last one left.
void BuildMap(const ToolProfile& p, MapModel& map) {
  const StageDefaults& d = p.defaults;
  const StageContext context = ProcessStageContext(p.stage_rules);
  int stage_status = 0;
  float t1 = CpuSeconds();
  GroupingEntry(context, d.grouping_method, d.grouping_by, d.threshold, map.num_markers,
                map.anchor.data(), map.group.data(), &stage_status);
  PrintTime("DLL MAPGrouping", t1, CpuSeconds());
  RebuildGroupModel(map);
  t1 = CpuSeconds();
  OrderingAllEntry(context, d.ordering_method, d.ordering_by, d.ordering_option, d.ordering_param1,
                   d.ordering_param2, map.num_markers, map.num_groups, map.group_size.data(),
                   map.group_status.data(), &map.map_state, map.anchor.data(), map.group.data(),
                   map.order.data(), map.position.data(), &stage_status);
  PrintTime("DLL MAPOrderingAll", t1, CpuSeconds());
  t1 = CpuSeconds();
  RipplingAllEntry(context, d.rippling_by, d.window_size, map.num_markers, map.num_groups,
                   map.group_size.data(), map.group_status.data(), &map.map_state,
                   map.group.data(), map.order.data(), map.position.data(), &stage_status);
  PrintTime("DLL MAPRipplingAll", t1, CpuSeconds());
}

// Names the groups by their status and writes every result file of the tool.
bool NameAndWrite(MapToolPolicy& policy, const std::string& path, const MapModel& map) {
  std::vector<std::string> names(static_cast<size_t>(map.num_groups), std::string(19, ' '));
  NameGroups(map.num_groups, map.group_status.data(), names);
  const std::vector<int> name_codes = GroupNamesToCodes(names);
  FinishedMap finished;
  finished.num_markers = map.num_markers;
  finished.anchor = map.anchor.data();
  finished.num_mapped = map.num_mapped;
  finished.num_unlinked = map.num_unlinked;
  finished.num_groups = map.num_groups;
  finished.group_name_codes = name_codes.data();
  finished.group_size = map.group_size.data();
  finished.order = map.order.data();
  finished.position = map.position.data();
  const float t1 = CpuSeconds();
  MessageCode() = 0;
  WriteChecked(policy, path, finished, OutputSwitches::AllOn(policy.Profile().output_switches));
  const bool written = MessageCode() == 0;
  PrintTime(policy.Profile().output_name, t1, CpuSeconds());
  if (!written) MessageCode() = kEntryFailed;
  return written;
}

}  // namespace

StageContext ProcessStageContext(const StageRules& rules) {
  StageContext context;
  context.rules = rules;
  context.store = Process().pair_store;
  context.random = &Process().random;
  context.log_only = [](std::string_view line) { Process().log.Write(line); };
  return context;
}

void FillFinishedLayout(const FinishedMap& args, FinishedMapLayout& out) {
  out.num_markers = args.num_markers;
  out.num_mapped = args.num_mapped;
  out.num_unlinked = args.num_unlinked;
  if (args.anchor != nullptr) out.anchor.assign(args.anchor, args.anchor + args.num_markers);
  out.chromosome_names.clear();
  for (int g = 0; g < args.num_groups; ++g)
    out.chromosome_names.push_back(GroupNameFromCodes(args.group_name_codes, g));
  out.chromosome_sizes.assign(args.group_size, args.group_size + args.num_groups);
  out.order.assign(args.order, args.order + args.num_markers);
  out.position.assign(args.position, args.position + args.num_mapped);
}

OutputSwitches OutputSwitches::AllOn(int count) {
  OutputSwitches s;
  s.count = std::clamp(count, 0, kMax);
  for (int k = 0; k < s.count; ++k) s.value[k] = 1;
  return s;
}

void FindNumMarkersBody(const ToolProfile& profile, int path_len, const char* path,
                        const MapSizeResults& out, int* status) {
  int scratch = 0;
  status = StatusOrScratch(status, scratch);
  *status = 0;
  GuardedEntry(profile.letters, profile.find_num_markers_name, status,
               [&] { ReadSizes(profile, path_len, path, out, status); });
}

void CheckErrorBody(MapToolPolicy& policy, int path_len, const char* path, int* status,
                    int threads) {
  const ToolProfile& p = policy.Profile();
  int scratch = 0;
  status = StatusOrScratch(status, scratch);
  *status = 0;
  GuardedEntry(p.letters, p.check_failure_name, status, [&] {
    MessageCode() = 0;
    const std::string file_path = EntryPath(path_len, path);
    InputFile in;
    if (!in.Open(file_path)) {
      ReportMissingInput(file_path, p.check_failure_name, status);
      return;
    }
    policy.Read(in);
    in.Close();
    if (MessageCode() == 0) {
      policy.FillCheckArrays();
      // A pairwise file that cannot be written (a full disk, a read-only folder) leaves the
      // stages that follow nothing to read: the check fails.
      if (!WritePairFile(policy, file_path, threads)) MessageCode() = kEntryFailed;
    }
    if (MessageCode() != 0) ReportEntryFailure(p.check_failure_name, status);
    else ReportEntrySuccess(p.check_success_name);
  });
}

void OutputBody(MapToolPolicy& policy, int path_len, const char* path, const FinishedMap& map,
                const OutputSwitches& switches) {
  int status = 0;
  // The output exports keep no log of their own: their lines join the log of a run that holds
  // one, and otherwise go to standard output only.
  GuardedEntry("", policy.Profile().output_name, &status, [&] {
    MessageCode() = 0;
    const std::string file_path = EntryPath(path_len, path);
    InputFile in;
    if (!in.Open(file_path)) {
      MessageCode() = kMissingFile;
      PrintMessage(kMissingFile, {MsgArg::Field(file_path)});
      return;
    }
    policy.Read(in);
    in.Close();
    if (MessageCode() != 0) return;  // the reader has said what is wrong
    WriteChecked(policy, file_path, map, switches);
  });
}

void AllByDefaultBody(MapToolPolicy& policy, int path_len, const char* path, int* status,
                      int threads) {
  const ToolProfile& p = policy.Profile();
  int scratch = 0;
  status = StatusOrScratch(status, scratch);
  *status = 0;
  GuardedEntry(p.letters, p.all_by_default_name, status, [&] {
    int num_markers = 0, space_type = 0, space_unit = 0, num_chs = 0;
    if (!ReadSizes(p, path_len, path, {&space_type, &space_unit, &num_chs, &num_markers}, status)) {
      // Nothing is allocated yet; `status` keeps the code of the size read.
      MessageCode() = kEntryFailed;
      PrintFrameMessage(p.all_by_default_name, 0.0f, 0.0f, 0);
      return;
    }
    MapModel& map = Process().map;
    AllocateMapState(map, num_markers);
    const std::string file_path = EntryPath(path_len, path);
    if (!ReadAndPair(policy, file_path, map, status, threads)) return;
    BuildMap(p, map);
    // A map built on a store cut short under the run is no map: nothing is written.
    if (StoreCutShort(p.all_by_default_name, status)) return ReleaseMapState(map);
    const bool written = NameAndWrite(policy, file_path, map);
    ReleaseMapState(map);
    if (written) ReportEntrySuccess(p.all_by_default_name);
    else ReportEntryFailure(p.all_by_default_name, status);
  });
}

}  // namespace gae
