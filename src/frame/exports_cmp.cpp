// The exports of the consensus-map tool (CMP), each a shell over the map-tool driver with the
// CMP policy. CMPFindNumMarkers stands with the other marker-count exports.
#include "frame/entry.h"
#include "frame/cmp_tool_policy.h"
#include "frame/map_tool_driver.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

extern "C" {

GAE_API void CheckErrorCMP(int PathLen, const char* Path, int NumChs, int NumMarkers,
                           int* MarkerNameCodes, int* NumMaps, int* MarkerPlaces, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, NumMaps, MarkerPlaces), "CMP",
                               "DLL CheckErrorCMP", Status))
    return;
  const gae::CmpCheckArrays out{NumChs, NumMarkers, MarkerNameCodes, NumMaps, MarkerPlaces};
  gae::CheckErrorBody(gae::CmpPolicy(&out), PathLen, Path, Status, gae::PairStoreThreads());
}

GAE_API void CMPOutput(int PathLen, const char* Path, int NumMarkers, int NumMapped,
                       int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteDIS) {
  gae::OutputBody(gae::CmpPolicy(), PathLen, Path,
                  {NumMarkers, nullptr, NumMapped, NumUnlinked, NumGroups, GroupNameCodes, GroupSize, Order, Position},
                  {{WriteDIS}, 1});
}

GAE_API void CMPAllByDefault(int PathLen, const char* Path, int* Status) {
  gae::AllByDefaultBody(gae::CmpPolicy(), PathLen, Path, Status, gae::PairStoreThreads());
}

}  // extern "C"
