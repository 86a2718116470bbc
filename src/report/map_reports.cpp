#include "report/map_reports.h"

#include <algorithm>

#include "vocabulary/fixed_format.h"
#include "report/chromosome_counter.h"
#include "report/segregation.h"
#include "report/summary_text.h"

namespace gae {

namespace {

using fmt::A;
using fmt::F;
using fmt::I;
using fmt::TrimRight;

// The map section of `.sum`: intervals and positions from the map, the stored frequency of
// each marker with the one before it, and the interference of each inner marker.
void SumChromosomeRows(const FinishedMapLayout& map, const PairTable& pairs, int32_t chrom,
                       int32_t base, SummaryTable& table) {
  const int32_t n = map.chromosome_sizes[chrom - 1];
  for (int32_t k = 1; k <= n; ++k) {
    SummaryRow row;
    row.chromosome = chrom;
    row.marker = map.order[base + k - 1];
    row.position = map.position[base + k - 1];
    if (k > 1) {
      const int32_t before = map.order[base + k - 2];
      row.interval = map.position[base + k - 1] - map.position[base + k - 2];
      row.rec_freq = pairs.Second(row.marker, before);
      if (k < n) {
        const int32_t after = map.order[base + k];
        row.interference = Interference(row.rec_freq, pairs.Second(after, row.marker),
                                        pairs.Second(before, after));
      }
    }
    table.rows.push_back(row);
  }
}

}  // namespace

float Interference(float r1, float r2, float r3) {
  const float product = r1 * r2;
  if (product <= 0.000001f) return 0.0f;
  return 1.0f - (r1 + r2 - r3) / (2.0f * product);
}

SummaryTable CombinedSummary(const FinishedMapLayout& map, const PairTable& pairs, bool interference) {
  SummaryTable table = FinishedMapSections(map);
  table.interference = interference;
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    SumChromosomeRows(map, pairs, c, base, table);
    base += map.chromosome_sizes[c - 1];
  }
  return table;
}

std::string SumReport(const MapLayout& map, const PairTable& pairs) {
  return SummaryText(map, CombinedSummary(map, pairs, true));
}

std::string MtpReport(const MapLayout& map) {
  std::string out = A("NewMarkerID", 12) + A("OriginalID", 12) + " " + A("MarkerName", 35);
  for (const char* word : {"Anchor", "Chromsome", "Posotion", "Size(2/12)", "Size(1)", "Size(0/10)",
                           "Size(-1)", "Chi-Square", "Pr>ChiSq", "HetBand"})
    out += A(word, 12);
  out += "\n";
  const std::vector<int32_t> chromosome = LaggingChromosomeNumbers(map.chromosome_sizes, map.num_mapped);
  const int pop = map.population_type;
  const bool het_visible = pop == 1 || pop == 2 || pop == 7 || pop == 8 || (pop >= 9 && pop <= 10) ||
                           (pop >= 13 && pop <= 16);
  // Like the values they print, the test and the class word are kept from row to row and
  // overwritten only when the marker gives them a value.
  std::string het_band;
  float chi_square = 0.0f, probability = 0.0f;
  for (int32_t row = 1; row <= map.num_mapped; ++row) {
    const int32_t marker = map.order[row - 1];
    const int32_t cls = map.marker_class[marker - 1];
    const SegregationTest test = SegregationChiSquare(pop, cls, map.TypesOf(marker), map.num_individuals);
    if (test.tested) {
      chi_square = test.chi_square;
      probability = test.probability;
    }
    if (!het_visible) het_band = "NA";
    else if (cls == 1) het_band = "Codominant";
    else if (cls == 12) het_band = "Dominant";
    else if (cls == 10) het_band = "Recessive";
    out += I(row, 12) + I(marker, 12) + " " + A(TrimRight(map.marker_names[marker - 1]), 35) +
           I(map.anchor[marker - 1], 12) + I(chromosome[row - 1], 12) +
           F(map.position[row - 1], 12, 4) + I(test.counts.n2, 12) + I(test.counts.n1, 12) +
           I(test.counts.n0, 12) + I(test.counts.nx, 12) + F(chi_square, 12, 4) +
           F(probability, 12, 4) + A(het_band, 12) + "\n";
  }
  return out;
}

std::string PairMatrixReport(const FinishedMapLayout& map, const PairTable& pairs, PairMatrix which) {
  const std::span<const int32_t> linked(map.order.data(), static_cast<std::size_t>(map.num_mapped));
  return PairMatrixText(map, linked, [&](int32_t mi, int32_t mj) {
    switch (which) {
      case PairMatrix::kLod: return 0.0f - pairs.First(mi, mj);
      case PairMatrix::kRec: return pairs.Second(mi, mj);
      default: return MapRecToDistance(map.mapping_function, pairs.Second(mi, mj));
    }
  });
}

}  // namespace gae
