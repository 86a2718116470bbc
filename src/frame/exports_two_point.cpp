// Export of the single-table two-point calculator. It opens no log and sets no message code.
#include "gaengine.h"
#include "twopoint/two_point_tool.h"

extern "C" {

GAE_API void ToolTwoPointREC(int PairCode, int PopulationType, const float* Cells, float* RecFreq,
                             float* StdErr, float* LOD, float* PValue, float* HaldaneCM,
                             float* KosambiCM) {
  const float empty[9] = {};
  const gae::TwoPointToolResult result =
      gae::TwoPointForTable(PairCode, PopulationType, Cells != nullptr ? Cells : empty);
  if (RecFreq != nullptr) *RecFreq = result.rec_freq;
  if (StdErr != nullptr) *StdErr = result.std_err;
  if (LOD != nullptr) *LOD = result.lod;
  if (PValue != nullptr) *PValue = result.p_value;
  if (HaldaneCM != nullptr) *HaldaneCM = result.haldane_cm;
  if (KosambiCM != nullptr) *KosambiCM = result.kosambi_cm;
}

}  // extern "C"
