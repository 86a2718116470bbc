#include "report/summary_text.h"

#include <algorithm>

#include "vocabulary/fixed_format.h"

namespace gae {

namespace {

using fmt::A;
using fmt::F;
using fmt::I;
using fmt::TrimRight;

std::string Name19(const std::string& name) { return A(TrimRight(name), 19); }

void MarkerListSection(const FinishedMapLayout& map, const char* heading, const std::vector<int32_t>& markers,
                       std::string& out) {
  out += A(heading, 20) + A("MarkerName", 20) + "\n";
  for (int32_t marker : markers) out += I(marker, 20) + " " + Name19(map.marker_names[marker - 1]) + "\n";
}

}  // namespace

std::string SummaryText(const FinishedMapLayout& map, const SummaryTable& table) {
  std::string out;
  for (const char* word : {"ChromsomeID", "ChromosomeName", "MarkerName", "Interval(cM)",
                           "Position(cM)", "RecomFrequency"})
    out += A(word, 20);
  if (table.interference) out += A("Interference", 20);
  out += "\n";
  for (const SummaryRow& row : table.rows) {
    out += I(row.chromosome, 20) + A(TrimRight(map.chromosome_names[row.chromosome - 1]), 20) + " " +
           Name19(map.marker_names[row.marker - 1]) + F(row.interval, 20, 4) +
           F(row.position, 20, 4) + F(row.rec_freq, 20, 4);
    if (table.interference) out += F(row.interference, 20, 4);
    out += "\n";
  }
  out += "\n";
  return out + SummarySectionsText(map, table);
}

std::string SummarySectionsText(const FinishedMapLayout& map, const SummaryTable& table) {
  std::string out;
  for (const char* word : {"ChromosomeID", "ChromosomeName", "NumMarkers", "ChromLength(cM)"})
    out += A(word, 20);
  out += "\n";
  float genome = 0.0f;
  int32_t listed = 0;
  for (std::size_t c = 0; c < table.chromosome_markers.size(); ++c) {
    genome += table.chromosome_lengths[c];
    listed += table.chromosome_markers[c];
    out += I(static_cast<long long>(c + 1), 20) + " " + Name19(map.chromosome_names[c]) +
           I(table.chromosome_markers[c], 20) + F(table.chromosome_lengths[c], 20, 4) + "\n";
  }
  out += A("WholeGenome", 20) + A("WholeGenome", 20) + I(listed, 20) + F(genome, 20, 4) + "\n";
  out += "\n";

  MarkerListSection(map, "UnlinkedMarkerID", table.unlinked, out);
  out += "\n";
  MarkerListSection(map, "DeletedMarkerID", table.deleted, out);
  return out;
}

SummaryTable FinishedMapSections(const FinishedMapLayout& map) {
  SummaryTable table;
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    const int32_t n = map.chromosome_sizes[c - 1];
    table.chromosome_markers.push_back(n);
    table.chromosome_lengths.push_back(n > 0 ? map.position[base + n - 1] - map.position[base] : 0.0f);
    base += n;
  }
  table.unlinked.assign(map.order.begin() + map.num_mapped,
                        map.order.begin() + map.num_mapped + map.num_unlinked);
  table.deleted.assign(map.order.begin() + map.num_mapped + map.num_unlinked, map.order.end());
  return table;
}

std::string PairMatrixText(const FinishedMapLayout& map, std::span<const int32_t> markers,
                           const std::function<float(int32_t, int32_t)>& value) {
  // Larger maps are cut at their first 100 markers: the matrices are for reading by eye.
  const std::size_t n = std::min<std::size_t>(markers.size(), 100);
  std::string out = A("NewMarkerID", 12) + A("MarkerName", 36) + A("Anchor", 12);
  for (std::size_t j = 1; j <= n; ++j) out += I(static_cast<long long>(j), 12);
  out += "\n";
  for (std::size_t i = 1; i <= n; ++i) {
    const int32_t mi = markers[i - 1];
    out += I(static_cast<long long>(i), 12) + " " + A(TrimRight(map.marker_names[mi - 1]), 35) +
           I(map.anchor[mi - 1], 12);
    for (std::size_t j = 1; j < i; ++j) out += F(value(mi, markers[j - 1]), 12, 4);
    out += "\n";
  }
  return out;
}

}  // namespace gae
