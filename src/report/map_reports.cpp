#include "report/map_reports.h"

#include <algorithm>

#include "frame/fixed_format.h"
#include "report/chromosome_counter.h"
#include "report/segregation.h"

namespace gae {

namespace {

using fmt::A;
using fmt::F;
using fmt::I;
using fmt::TrimRight;

std::string Name19(const std::string& name) { return A(TrimRight(name), 19); }

// Rows of one chromosome of the map in `.sum`.
void SumChromosomeRows(const MapLayout& map, const PairTable& pairs, int32_t chrom,
                       int32_t base, std::string& out) {
  const int32_t n = map.chromosome_sizes[chrom - 1];
  for (int32_t k = 1; k <= n; ++k) {
    const int32_t marker = map.order[base + k - 1];
    float interval = 0.0f, rec_freq = 0.5f, interference = 0.0f;
    if (k > 1) {
      const int32_t before = map.order[base + k - 2];
      interval = map.position[base + k - 1] - map.position[base + k - 2];
      rec_freq = pairs.Second(marker, before);
      if (k < n) {
        const int32_t after = map.order[base + k];
        interference = Interference(rec_freq, pairs.Second(after, marker), pairs.Second(before, after));
      }
    }
    out += I(chrom, 20) + A(TrimRight(map.chromosome_names[chrom - 1]), 20) + " " +
           Name19(map.marker_names[marker - 1]) + F(interval, 20, 4) +
           F(map.position[base + k - 1], 20, 4) + F(rec_freq, 20, 4) + F(interference, 20, 4) + "\n";
  }
}

float ChromosomeLength(const FinishedMapLayout& map, int32_t base, int32_t n) {
  return n > 0 ? map.position[base + n - 1] - map.position[base] : 0.0f;
}

void MarkerListSection(const FinishedMapLayout& map, const char* heading, int32_t first, int32_t count,
                       std::string& out) {
  out += A(heading, 20) + A("MarkerName", 20) + "\n";
  for (int32_t k = first; k < first + count; ++k) {
    const int32_t marker = map.order[k];
    out += I(marker, 20) + " " + Name19(map.marker_names[marker - 1]) + "\n";
  }
}

}  // namespace

float Interference(float r1, float r2, float r3) {
  const float product = r1 * r2;
  if (product <= 0.000001f) return 0.0f;
  return 1.0f - (r1 + r2 - r3) / (2.0f * product);
}

std::string SumReport(const MapLayout& map, const PairTable& pairs) {
  std::string out;
  for (const char* word : {"ChromsomeID", "ChromosomeName", "MarkerName", "Interval(cM)",
                           "Position(cM)", "RecomFrequency", "Interference"})
    out += A(word, 20);
  out += "\n";
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    SumChromosomeRows(map, pairs, c, base, out);
    base += map.chromosome_sizes[c - 1];
  }
  out += "\n";
  return out + SumMapSections(map);
}

std::string SumMapSections(const FinishedMapLayout& map) {
  std::string out;
  for (const char* word : {"ChromosomeID", "ChromosomeName", "NumMarkers", "ChromLength(cM)"})
    out += A(word, 20);
  out += "\n";
  int32_t base = 0;
  float genome = 0.0f;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    const int32_t n = map.chromosome_sizes[c - 1];
    const float length = ChromosomeLength(map, base, n);
    genome += length;
    out += I(c, 20) + " " + Name19(map.chromosome_names[c - 1]) + I(n, 20) + F(length, 20, 4) + "\n";
    base += n;
  }
  out += A("WholeGenome", 20) + A("WholeGenome", 20) + I(map.num_mapped, 20) + F(genome, 20, 4) + "\n";
  out += "\n";

  MarkerListSection(map, "UnlinkedMarkerID", map.num_mapped, map.num_unlinked, out);
  out += "\n";
  MarkerListSection(map, "DeletedMarkerID", map.num_mapped + map.num_unlinked, map.NumDeleted(), out);
  return out;
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
  // Larger maps are cut at their first 100 markers: the matrices are for reading by eye.
  const int32_t n = std::min<int32_t>(map.num_mapped, 100);
  std::string out = A("NewMarkerID", 12) + A("MarkerName", 36) + A("Anchor", 12);
  for (int32_t j = 1; j <= n; ++j) out += I(j, 12);
  out += "\n";
  for (int32_t i = 1; i <= n; ++i) {
    const int32_t mi = map.order[i - 1];
    out += I(i, 12) + " " + A(TrimRight(map.marker_names[mi - 1]), 35) + I(map.anchor[mi - 1], 12);
    for (int32_t j = 1; j < i; ++j) {
      const int32_t mj = map.order[j - 1];
      float value = 0.0f;
      switch (which) {
        case PairMatrix::kLod: value = 0.0f - pairs.First(mi, mj); break;
        case PairMatrix::kRec: value = pairs.Second(mi, mj); break;
        case PairMatrix::kDis: value = MapRecToDistance(map.mapping_function, pairs.Second(mi, mj)); break;
      }
      out += F(value, 12, 4);
    }
    out += "\n";
  }
  return out;
}

}  // namespace gae
