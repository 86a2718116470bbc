// Exports of the validators of the QTL and analysis tools and the genomic-prediction header.
#include "gaengine.h"
#include "frame/validator_entries.h"

extern "C" {

GAE_API void CheckErrorBIP(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kBIP, PathLen, Path, Status);
}

GAE_API void CheckErrorSDL(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kSDL, PathLen, Path, Status);
}

GAE_API void CheckErrorMET(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kMET, PathLen, Path, Status);
}

GAE_API void CheckErrorNAM(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kNAM, PathLen, Path, Status);
}

GAE_API void CheckErrorPLQ(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kPLQ, PathLen, Path, Status);
}

GAE_API void CheckErrorCDQ(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kCDQ, PathLen, Path, Status);
}

GAE_API void CheckErrorCSL(int PathLen, const char* Path, int* Status) {
  gae::CheckQtlFileEntry(gae::QtlTool::kCSL, PathLen, Path, Status);
}

GAE_API void CheckErrorAOV(int PathLen, const char* Path, int* Status) {
  gae::CheckAovEntry(PathLen, Path, Status);
}

GAE_API void GSPFindNumTraits(int PathLen, const char* Path, int* NumTraits, int* ErrorFlag) {
  gae::GspFindNumTraitsEntry(PathLen, Path, NumTraits, ErrorFlag);
}

GAE_API void GSPFindTraitName(int PathLen, const char* Path, int NumTraits, int* Names,
                              int* FirstHeaderValue, int* ErrorFlag) {
  gae::GspFindTraitNameEntry(PathLen, Path, NumTraits, Names, FirstHeaderValue, ErrorFlag);
}

}  // extern "C"
