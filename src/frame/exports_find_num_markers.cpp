// Exports of the marker-count family: how large the caller's arrays must be.
#include "frame/entry.h"
#include "frame/map_tool_driver.h"
#include "gaengine.h"
#include "frame/validator_entries.h"

extern "C" {

// The map tools' own: their sizes come from the tool's profile.
GAE_API void CDMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers == nullptr, "CDM", "DLL CDMFindNumMarkers", Status)) return;
  gae::FindNumMarkersBody(gae::ProfileOf(gae::MapTool::kCDM), PathLen, Path, {.num_markers = NumMarkers}, Status);
}

GAE_API void PLMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers == nullptr, "PLM", "DLL PLMFindNumMarkers", Status)) return;
  gae::FindNumMarkersBody(gae::ProfileOf(gae::MapTool::kPLM), PathLen, Path, {.num_markers = NumMarkers}, Status);
}

GAE_API void CMPFindNumMarkers(int PathLen, const char* Path, int* SpaceType, int* SpaceUnit,
                               int* NumChs, int* NumMarkers, int* Status) {
  if (gae::RefuseMissingArrays(gae::AnyNull(SpaceType, SpaceUnit, NumChs, NumMarkers), "CMP", "DLL CMPFindNumMarkers",
                               Status))
    return;
  gae::FindNumMarkersBody(gae::ProfileOf(gae::MapTool::kCMP), PathLen, Path, {SpaceType, SpaceUnit, NumChs, NumMarkers}, Status);
}

GAE_API void SNPFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers,
                               int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers == nullptr, "SNP", "DLL SNPFindNumMarkers", Status)) return;
  gae::FindNumMarkersEntry("SNP", "DLL SNPFindNumMarkers", ToolCode, PathLen, Path, NumMarkers,
                           Status);
}

GAE_API void BINFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers,
                               int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers == nullptr, "BIN", "DLL BINFindNumMarkers", Status)) return;
  gae::FindNumMarkersEntry("BIN", "DLL BINFindNumMarkers", ToolCode, PathLen, Path, NumMarkers,
                           Status);
}

}  // extern "C"
