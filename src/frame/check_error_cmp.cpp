#include "frame/check_error_cmp.h"

#include <algorithm>

#include "frame/name_codes.h"

namespace gae {

void FillConsensusCheck(const DistinctMarkers& table, const CmpCheckArrays& out) {
  if (out.num_markers < 1) return;
  NamesToCodes(table.names, 35, out.num_markers, out.name_codes);
  const int n = std::min(out.num_markers, table.Count());
  std::copy(table.maps_holding.begin(), table.maps_holding.begin() + n, out.maps_holding);
  table.FillPlaces(out.num_markers, out.num_chs, out.places);
}

}  // namespace gae
