// The MAP check: validate the input, describe each marker, and write the pairwise file that
// the stage exports read.
#include "frame/check_error_map.h"
#include "gaengine.h"
#include "twopoint/pair_store_writer.h"

extern "C" {

GAE_API void CheckErrorMAP(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeA, int* SizeH, int* SizeB, int* SizeX,
                           int* MarkerCategory, float* ChiSquare, float* Probability, int* Status) {
  gae::MapCheckArrays out;
  out.num_markers = NumMarkers;
  out.name_codes = MarkerNameCodes;
  out.anchor = Anchor;
  out.size_a = SizeA;
  out.size_h = SizeH;
  out.size_b = SizeB;
  out.size_x = SizeX;
  out.category = MarkerCategory;
  out.chi_square = ChiSquare;
  out.probability = Probability;
  gae::CheckErrorMapEntry(PathLen, Path, out, Status, gae::PairStoreThreads());
}

}  // extern "C"
