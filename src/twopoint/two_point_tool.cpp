#include "twopoint/two_point_tool.h"

#include "vocabulary/chi_square.h"
#include "twopoint/mapping_function.h"
#include "twopoint/two_point.h"

namespace gae {

TwoPointToolResult TwoPointForTable(int pair_code, int population_type, const float cells[9]) {
  TwoPointToolResult out;
  float sum = 0.0f;
  for (int k = 0; k < 9; ++k) sum += cells[k];
  if (sum <= 0.0f) {
    out.rec_freq = 0.5f;
    out.lod = 0.0f;
    out.std_err = 0.0f;
  } else {
    float table[9];
    const bool transpose = pair_code == 121 || pair_code == 101 || pair_code == 1012;
    for (int row = 0; row < 3; ++row)
      for (int col = 0; col < 3; ++col)
        table[3 * row + col] = transpose ? cells[3 * col + row] : cells[3 * row + col];
    TwoPointEstimate(population_type, pair_code, table, out.rec_freq, out.lod, out.std_err);
    // The calculator answers as the pair store keeps the pair.
    if (UnlinkedWhenNotANumber(out.rec_freq, out.lod)) out.std_err = 0.0f;
  }
  // Likelihood-ratio statistic 2 ln(10) LOD.
  const float statistic = 2 * 2.3025851f * out.lod;
  out.p_value = 1 - CHIDF(statistic, 1.0f);
  out.haldane_cm = MapRecToDistance(2, out.rec_freq);
  out.kosambi_cm = MapRecToDistance(1, out.rec_freq);
  return out;
}

}  // namespace gae
