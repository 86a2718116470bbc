// The exports of the PLM tool (four-way and eight-way pure lines), each a shell over the
// map-tool driver with the PLM policy. PLMFindNumMarkers is with the other size reads.
#include "frame/entry.h"
#include "frame/map_tool_driver.h"
#include "frame/plm_tool_policy.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

extern "C" {

GAE_API void CheckErrorPLM(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeA, int* SizeB, int* SizeC, int* SizeD,
                           int* SizeE, int* SizeF, int* SizeG, int* SizeH, int* SizeX,
                           int* MarkerCategory, float* ChiSquare, float* Probability, int* Status) {
  if (gae::RefuseMissingArrays(
          NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, Anchor, SizeA, SizeB, SizeC, SizeD, SizeE, SizeF, SizeG, SizeH,
                                         SizeX, MarkerCategory, ChiSquare, Probability),
          "PLM", "DLL CheckErrorPLM", Status))
    return;
  const gae::PlmCheckArrays out{NumMarkers, MarkerNameCodes, Anchor, {SizeA, SizeB, SizeC, SizeD, SizeE, SizeF, SizeG, SizeH, SizeX}, MarkerCategory, ChiSquare, Probability};
  gae::CheckErrorBody(gae::PlmPolicy(&out), PathLen, Path, Status, gae::PairStoreThreads());
}

GAE_API void PLMOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && Anchor == nullptr, "", "DLL PLMOutput", nullptr)) return;
  gae::OutputBody(gae::PlmPolicy(), PathLen, Path,
                  {NumMarkers, Anchor, NumMapped, NumUnlinked, NumGroups, GroupNameCodes, GroupSize, Order, Position},
                  {{WriteLOD, WriteREC, WriteDIS, WriteQTLFiles}, 4});
}

GAE_API void PLMAllByDefault(int PathLen, const char* Path, int* Status) {
  gae::AllByDefaultBody(gae::PlmPolicy(), PathLen, Path, Status, gae::PairStoreThreads());
}

}  // extern "C"
