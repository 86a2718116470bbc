#include "report/consensus_reports.h"

#include <algorithm>
#include <vector>

#include "vocabulary/fixed_format.h"
#include "report/map_reports.h"
#include "report/summary_text.h"

namespace gae {

namespace {

using fmt::A;
using fmt::F;
using fmt::I;
using fmt::TrimRight;

}  // namespace

std::string ConsensusSumReport(const FinishedMapLayout& map, const DistinctMarkers& table,
                               int32_t num_maps) {
  const int32_t m = table.Count();
  std::vector<int32_t> places(static_cast<std::size_t>(m) * std::max(num_maps, 0), 0);
  table.FillPlaces(m, num_maps, places.data());

  std::string out;
  for (const char* word : {"ChromsomeID", "ChromosomeName", "MarkerName", "Interval(cM)",
                           "Position(cM)", "NumMaps"})
    out += A(word, 20);
  for (int32_t c = 1; c <= num_maps; ++c) out += I(c, 20);
  out += "\n";
  int32_t base = 0;
  for (int32_t chrom = 1; chrom <= map.NumChromosomes(); ++chrom) {
    const int32_t n = map.chromosome_sizes[chrom - 1];
    for (int32_t k = 0; k < n; ++k) {
      const int32_t marker = map.order[base + k];
      const float interval = k == 0 ? 0.0f : map.position[base + k] - map.position[base + k - 1];
      out += I(chrom, 20) + A(TrimRight(map.chromosome_names[chrom - 1]), 20) + " " +
             A(TrimRight(map.marker_names[marker - 1]), 19) + F(interval, 20, 4) +
             F(map.position[base + k], 20, 4) + I(table.maps_holding[marker - 1], 20);
      for (int32_t c = 0; c < num_maps; ++c)
        out += I(places[static_cast<std::size_t>(c) * m + (marker - 1)], 20);
      out += "\n";
    }
    base += n;
  }
  out += "\n";
  return out + SummarySectionsText(map, FinishedMapSections(map));
}

std::string ConsensusDisReport(const FinishedMapLayout& map, const PairTable& pairs) {
  // Like the matrices of the other tools, cut at 100 markers: it is meant for reading by eye.
  const int32_t n = std::min<int32_t>(map.num_mapped, 100);
  std::string out = A("NewMarkerID", 12) + A("MarkerName", 20);
  for (int32_t j = 1; j <= n; ++j) out += I(j, 12);
  out += "\n";
  for (int32_t i = 1; i <= n; ++i) {
    const int32_t mi = map.order[i - 1];
    out += I(i, 12) + " " + A(TrimRight(map.marker_names[mi - 1]), 19);
    for (int32_t j = 1; j < i; ++j) out += F(pairs.Distance(mi, map.order[j - 1]), 12, 4);
    out += "\n";
  }
  return out;
}

}  // namespace gae
