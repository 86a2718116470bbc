// The reports of a finished bi-parental map, and the whole run that ends with them.
#include "frame/map_all_by_default.h"
#include "frame/map_output.h"
#include "twopoint/pair_store_writer.h"
#include "gaengine.h"

extern "C" {

GAE_API void MAPOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles) {
  gae::MapOutputArgs args;
  args.num_markers = NumMarkers;
  args.anchor = Anchor;
  args.num_mapped = NumMapped;
  args.num_unlinked = NumUnlinked;
  args.num_groups = NumGroups;
  args.group_name_codes = GroupNameCodes;
  args.group_size = GroupSize;
  args.order = Order;
  args.position = Position;
  args.write_lod = WriteLOD;
  args.write_rec = WriteREC;
  args.write_dis = WriteDIS;
  args.write_qtl_files = WriteQTLFiles;
  gae::MapOutputEntry(PathLen, Path, args);
}

}  // extern "C"

extern "C" {

GAE_API void MAPAllByDefault(int PathLen, const char* Path, int* Status) {
  gae::MapAllByDefaultEntry(PathLen, Path, Status, gae::PairStoreThreads());
}

}  // extern "C"
