// The exports of the MAP tool (bi-parental populations), each a shell over the map-tool driver
// with the MAP policy.
#include "frame/entry.h"
#include "frame/map_tool_driver.h"
#include "frame/map_tool_policy.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

extern "C" {

GAE_API void MAPFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers == nullptr, "MAP", "DLL MAPFindNumMarkers", Status)) return;
  gae::FindNumMarkersBody(gae::ProfileOf(gae::MapTool::kMAP), PathLen, Path, {.num_markers = NumMarkers}, Status);
}

GAE_API void CheckErrorMAP(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeA, int* SizeH, int* SizeB, int* SizeX,
                           int* MarkerCategory, float* ChiSquare, float* Probability, int* Status) {
  if (gae::RefuseMissingArrays(
          NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, Anchor, SizeA, SizeH, SizeB, SizeX, MarkerCategory, ChiSquare, Probability),
          "MAP", "DLL CheckErrorMAP", Status))
    return;
  const gae::MapCheckArrays out{NumMarkers, MarkerNameCodes, Anchor, SizeA, SizeH, SizeB, SizeX, MarkerCategory, ChiSquare, Probability};
  gae::CheckErrorBody(gae::MapPolicy(&out), PathLen, Path, Status, gae::PairStoreThreads());
}

GAE_API void MAPOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && Anchor == nullptr, "", "DLL MAPOutput", nullptr)) return;
  gae::OutputBody(gae::MapPolicy(), PathLen, Path,
                  {NumMarkers, Anchor, NumMapped, NumUnlinked, NumGroups, GroupNameCodes, GroupSize, Order, Position},
                  {{WriteLOD, WriteREC, WriteDIS, WriteQTLFiles}, 4});
}

GAE_API void MAPAllByDefault(int PathLen, const char* Path, int* Status) {
  gae::AllByDefaultBody(gae::MapPolicy(), PathLen, Path, Status, gae::PairStoreThreads());
}

}  // extern "C"
