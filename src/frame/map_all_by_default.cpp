#include "frame/map_all_by_default.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engine/grouping_stage.h"
#include "engine/map_state.h"
#include "engine/ordering_stage.h"
#include "engine/rippling_stage.h"
#include "frame/check_error_map.h"
#include "frame/cpu_clock.h"
#include "frame/entry.h"
#include "frame/map_output.h"
#include "frame/name_codes.h"
#include "input/find_num_markers.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"

namespace gae {

namespace {

constexpr const char* kName = "DLL MAPAllByDefault";
constexpr int kToolCode = 104;

// The settled defaults of a whole MAP run. The threshold is a LOD score (ByWhat 1).
struct Defaults {
  int grouping_method = 1, grouping_by = 1;
  float threshold = 3.0f;
  int ordering_method = 2, ordering_by = 2, ordering_option = 1, starts = 5, local_search = 3;
  int rippling_by = 1, window = 5;
};

void PrintTime(const char* stage, float t1, float t2) {
  MessageCode() = 1103;
  PrintFrameMessage(stage, t1, t2, 0);
}

// Steps 4 to 8: read the file, keep its anchors, write the pairwise file. False when the run
// has to stop, with `status` set and the 1101 line printed.
bool ReadAndPair(const std::string& path, MapModel& map, int* status, int threads) {
  float t1 = CpuSeconds();
  InputFile in;
  if (!in.Open(path)) {
    ReportMissingInput(path, kName, status);
    return false;
  }
  MapToolInput data;
  ReadMapToolInput(in, 104, data);
  in.Close();
  float t2 = CpuSeconds();
  if (MessageCode() != 0) {
    ReportEntryFailure(kName, status);
    return false;
  }
  PrintTime("DLL MAP_ReadData", t1, t2);
  const size_t n = std::min(map.anchor.size(), data.anchors.size());
  std::copy(data.anchors.begin(), data.anchors.begin() + n, map.anchor.begin());
  if (!WriteMapPairwiseFile(path, data, threads)) {
    // Without its pairwise file the run has nothing to group.
    MessageCode() = 1101;
    ReportEntryFailure(kName, status);
    return false;
  }
  return true;
}

// Steps 13 and 14: name the groups by their status and write every result file.
void NameAndWrite(int path_len, const char* path, MapModel& map) {
  std::vector<std::string> names(map.num_groups, std::string(19, ' '));
  NameGroups(map.num_groups, map.group_status.data(), names);
  const std::vector<int> name_codes = GroupNamesToCodes(names);
  MapOutputArgs args;
  args.num_markers = map.num_markers;
  args.anchor = map.anchor.data();
  args.num_mapped = map.num_mapped;
  args.num_unlinked = map.num_unlinked;
  args.num_groups = map.num_groups;
  args.group_name_codes = name_codes.data();
  args.group_size = map.group_size.data();
  args.order = map.order.data();
  args.position = map.position.data();
  args.write_lod = args.write_rec = args.write_dis = args.write_qtl_files = 1;
  const float t1 = CpuSeconds();
  MapOutputEntry(path_len, path, args);
  PrintTime("DLL MAPOutput", t1, CpuSeconds());
}

}  // namespace

void MapAllByDefaultEntry(int path_len, const char* path, int* status, int threads) {
  *status = 0;
  GuardedEntry("MAP", kName, status, [&] {
    int num_markers = 0;
    FindNumMarkersEntry("MAP", "DLL MAPFindNumMarkers", 10, path_len, path, &num_markers, status);
    if (*status != 0) {
      MessageCode() = 1101;
      PrintFrameMessage(kName, 0, 0, 0);
      return;
    }
    MapModel& map = Process().map;
    AllocateMapState(map, num_markers);
    if (!ReadAndPair(EntryPath(path_len, path), map, status, threads)) return;

    // With these fixed options no stage rejects its arguments; each runs on what the last left.
    const Defaults d;
    int stage_status = 0;
    float t1 = CpuSeconds();
    GroupingEntry(kToolCode, d.grouping_method, d.grouping_by, d.threshold, map.num_markers,
                  map.anchor.data(), map.group.data(), &stage_status);
    PrintTime("DLL MAPGrouping", t1, CpuSeconds());
    RebuildGroupModel(map);
    t1 = CpuSeconds();
    OrderingAllEntry(kToolCode, d.ordering_method, d.ordering_by, d.ordering_option, d.starts,
                     d.local_search, map.num_markers, map.num_groups, map.group_size.data(),
                     map.group_status.data(), &map.map_state, map.anchor.data(), map.group.data(),
                     map.order.data(), map.position.data(), &stage_status);
    PrintTime("DLL MAPOrderingAll", t1, CpuSeconds());
    t1 = CpuSeconds();
    RipplingAllEntry(kToolCode, d.rippling_by, d.window, map.num_markers, map.num_groups,
                     map.group_size.data(), map.group_status.data(), &map.map_state,
                     map.group.data(), map.order.data(), map.position.data(), &stage_status);
    PrintTime("DLL MAPRipplingAll", t1, CpuSeconds());
    NameAndWrite(path_len, path, map);
    ReleaseMapState(map);
    ReportEntrySuccess(kName);
  });
}

}  // namespace gae
