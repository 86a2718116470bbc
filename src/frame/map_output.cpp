#include "frame/map_output.h"

#include <string>

#include "frame/entry.h"
#include "frame/name_codes.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "report/map_downstream.h"
#include "report/map_layout.h"
#include "report/map_reports.h"
#include "report/text_file.h"
#include "twopoint/pair_store_file.h"

namespace gae {

namespace {

MapLayout BuildLayout(MapToolInput& data, const MapOutputArgs& args) {
  MapLayout map;
  map.population_type = data.population_type;
  map.mapping_function = data.mapping_function;
  map.space_type = data.space_type;
  map.num_individuals = data.population_size;
  map.marker_names = std::move(data.markers.names);
  map.marker_class = std::move(data.markers.categories);
  map.types = std::move(data.markers.types);
  map.num_markers = args.num_markers;
  map.num_mapped = args.num_mapped;
  map.num_unlinked = args.num_unlinked;
  map.anchor.assign(args.anchor, args.anchor + args.num_markers);
  for (int g = 0; g < args.num_groups; ++g)
    map.chromosome_names.push_back(GroupNameFromCodes(args.group_name_codes, g));
  map.chromosome_sizes.assign(args.group_size, args.group_size + args.num_groups);
  map.order.assign(args.order, args.order + args.num_markers);
  map.position.assign(args.position, args.position + args.num_mapped);
  return map;
}

// The caller's arrays must describe a map of the markers in the file, or the reports would
// read names and pairs that do not exist.
bool Consistent(const MapLayout& map, const MapToolInput& data) {
  if (map.num_markers != data.num_markers || map.num_mapped < 0 || map.num_unlinked < 0 ||
      map.NumDeleted() < 0)
    return false;
  int64_t linked = 0;
  for (int32_t size : map.chromosome_sizes) {
    if (size < 0) return false;
    linked += size;
  }
  if (linked != map.num_mapped) return false;
  for (int32_t marker : map.order)
    if (marker < 1 || marker > map.num_markers) return false;
  return true;
}

}  // namespace

void MapOutputEntry(int path_len, const char* path, const MapOutputArgs& args) {
  int status = 0;
  // The output exports keep no log of their own: their lines join the log of a run that
  // holds one, and otherwise go to standard output only.
  GuardedEntry("", "DLL MAPOutput", &status, [&] {
    MessageCode() = 0;
    const std::string file_path = EntryPath(path_len, path);
    InputFile in;
    if (!in.Open(file_path)) {
      MessageCode() = 1002;
      PrintMessage(1002, {MsgArg::Field(file_path)});
      return;
    }
    MapToolInput data;
    ReadMapToolInput(in, 104, data);
    in.Close();
    if (MessageCode() != 0) return;  // the reader has said what is wrong
    const MapLayout map = BuildLayout(data, args);
    if (!Consistent(map, data)) {
      // Arrays that do not describe a map of this file's markers: nothing is written.
      MessageCode() = 1101;
      PrintFrameMessage("DLL MAPOutput", 0.0f, 0.0f, 0);
      return;
    }
    PairStoreFile store;
    if (!OpenProcessPairStore(store)) {
      MessageCode() = 1002;
      PrintMessage(1002, {MsgArg::Field(Process().pair_store.lrd_name)});
      return;
    }
    const std::string stem = ResultStem(file_path);
    ResultFiles files{file_path, {}};
    files.Write(stem + ".sum", SumReport(map, store.Table()));
    files.Write(stem + ".mtp", MtpReport(map));
    if (args.write_lod == 1) files.Write(stem + ".lod", PairMatrixReport(map, store.Table(), PairMatrix::kLod));
    if (args.write_rec == 1) files.Write(stem + ".rec", PairMatrixReport(map, store.Table(), PairMatrix::kRec));
    if (args.write_dis == 1) files.Write(stem + ".dis", PairMatrixReport(map, store.Table(), PairMatrix::kDis));
    WriteMapDownstreamFiles(map, stem, args.write_qtl_files == 1, Process().random, files);
    ReportSkippedResults(files.skipped);
  });
}

}  // namespace gae
