// Exports of the marker tools: the checks of SNP conversion and marker binning.
#include "frame/entry.h"
#include "frame/marker_tools.h"
#include "gaengine.h"

extern "C" {

GAE_API void CheckErrorSNP(int ToolCode, int PathLen, const char* Path, int NumMarkers,
                           int* MarkerNameCodes, int* Anchor, int* MarkerCode, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, Anchor, MarkerCode), "SNP",
                               "DLL CheckErrorSNP", Status))
    return;
  gae::CheckErrorSnpEntry(ToolCode, PathLen, Path, {NumMarkers, MarkerNameCodes, Anchor, MarkerCode},
                          Status);
}

GAE_API void CheckErrorBIN(int ToolCode, int PathLen, const char* Path, int NumMarkers,
                           int* MarkerNameCodes, int* Anchor, int* MarkerCategory, int* Status) {
  if (gae::RefuseMissingArrays(NumMarkers > 0 && gae::AnyNull(MarkerNameCodes, Anchor, MarkerCategory), "BIN",
                               "DLL CheckErrorBIN", Status))
    return;
  gae::CheckErrorBinEntry(ToolCode, PathLen, Path,
                          {NumMarkers, MarkerNameCodes, Anchor, MarkerCategory}, Status);
}

}  // extern "C"
