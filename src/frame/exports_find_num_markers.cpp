// Exports of the marker-count family: how large the caller's arrays must be.
#include "gaengine.h"
#include "input/find_num_markers.h"

extern "C" {

GAE_API void MAPFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  gae::FindNumMarkersEntry("MAP", "DLL MAPFindNumMarkers", 10, PathLen, Path, NumMarkers, Status);
}

GAE_API void CDMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  gae::FindNumMarkersEntry("CDM", "DLL CDMFindNumMarkers", 20, PathLen, Path, NumMarkers, Status);
}

GAE_API void PLMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status) {
  gae::FindNumMarkersEntry("PLM", "DLL PLMFindNumMarkers", 30, PathLen, Path, NumMarkers, Status);
}

GAE_API void SNPFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers,
                               int* Status) {
  gae::FindNumMarkersEntry("SNP", "DLL SNPFindNumMarkers", ToolCode, PathLen, Path, NumMarkers,
                           Status);
}

GAE_API void BINFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers,
                               int* Status) {
  gae::FindNumMarkersEntry("BIN", "DLL BINFindNumMarkers", ToolCode, PathLen, Path, NumMarkers,
                           Status);
}

}  // extern "C"
