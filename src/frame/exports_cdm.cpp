// The exports of the CDM tool (clonal F1 and double cross), each a shell over the map-tool
// driver with the CDM policy.
#include "frame/entry.h"
#include "frame/cdm_tool_policy.h"
#include "frame/map_tool_driver.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

extern "C" {

GAE_API void CheckErrorCDM(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeAC, int* SizeAD, int* SizeBC, int* SizeBD,
                           int* SizeXC, int* SizeXD, int* SizeAX, int* SizeBX, int* SizeAA,
                           int* SizeAB, int* SizeBB, int* SizeXX, int* MarkerCategory,
                           float* ChiSquare, float* Probability, int* Status) {
  if (gae::RefuseMissingArrays(
          NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, Anchor, SizeAC, SizeAD, SizeBC, SizeBD, SizeXC, SizeXD, SizeAX,
                                         SizeBX, SizeAA, SizeAB, SizeBB, SizeXX, MarkerCategory, ChiSquare, Probability),
          "CDM", "DLL CheckErrorCDM", Status))
    return;
  const gae::CdmCheckArrays out{NumMarkers, MarkerNameCodes, Anchor,
                                {SizeAC, SizeAD, SizeBC, SizeBD, SizeXC, SizeXD, SizeAX, SizeBX, SizeAA, SizeAB, SizeBB, SizeXX},
                                MarkerCategory, ChiSquare, Probability};
  gae::CheckErrorBody(gae::CdmPolicy(&out), PathLen, Path, Status, gae::PairStoreThreads());
}

GAE_API void CDMOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && Anchor == nullptr, "", "DLL CDMOutput", nullptr)) return;
  gae::OutputBody(gae::CdmPolicy(), PathLen, Path,
                  {NumMarkers, Anchor, NumMapped, NumUnlinked, NumGroups, GroupNameCodes, GroupSize, Order, Position},
                  {{WriteLOD, WriteREC, WriteDIS, WriteQTLFiles}, 4});
}

GAE_API void CDMAllByDefault(int PathLen, const char* Path, int* Status) {
  gae::AllByDefaultBody(gae::CdmPolicy(), PathLen, Path, Status, gae::PairStoreThreads());
}

}  // extern "C"
