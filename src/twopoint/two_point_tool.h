// The single-table calculator behind ToolTwoPointREC: a table typed in by hand, its estimate,
// test and distances.
#pragma once

namespace gae {

struct TwoPointToolResult {
  float rec_freq = 0.5f;
  float std_err = 0.0f;
  float lod = 0.0f;
  float p_value = 1.0f;      // of the likelihood-ratio test of linkage, chi-square with 1 df
  float haldane_cm = 0.0f;   // 1000 for unlinked
  float kosambi_cm = 0.0f;
};

// `cells` has the first marker's genotypes as rows whatever the pair code; the table is
// transposed here for the codes whose estimators expect the markers the other way round. The
// LOD is not clamped, so a negative LOD reaches the test as a negative statistic.
TwoPointToolResult TwoPointForTable(int pair_code, int population_type, const float cells[9]);

}  // namespace gae
