#include "report/clonal_reports.h"

#include <bit>
#include <cmath>

#include "vocabulary/fixed_format.h"
#include "report/clonal_segregation.h"
#include "twopoint/mapping_function.h"

namespace gae {

namespace {

using fmt::A;
using fmt::F;
using fmt::I;
using fmt::TrimRight;

// Words of a seven-word pair record.
constexpr int kCombinedLod = 0, kCombinedRec = 1, kFirstLod = 2, kSecondLod = 3, kFirstRec = 4,
              kSecondRec = 5, kPhase = 6;

float ViewRec(const PairTable& pairs, ClonalView view, int32_t i, int32_t j) {
  switch (view) {
    case ClonalView::kFirstParent: return pairs.Word(i, j, kFirstRec);
    case ClonalView::kSecondParent: return pairs.Word(i, j, kSecondRec);
    default: return pairs.Word(i, j, kCombinedRec);
  }
}

// The combined score is stored negated; the parents' LODs as they are.
float ViewLod(const PairTable& pairs, ClonalView view, int32_t i, int32_t j) {
  switch (view) {
    case ClonalView::kFirstParent: return pairs.Word(i, j, kFirstLod);
    case ClonalView::kSecondParent: return pairs.Word(i, j, kSecondLod);
    default: return 0.0f - pairs.Word(i, j, kCombinedLod);
  }
}

int32_t Category(const ClonalLayout& map, int32_t marker) { return map.category[marker - 1]; }

// The listed linked markers of one chromosome: their places in the map order.
std::vector<int32_t> ListedPlaces(const ClonalLayout& map, ClonalView view, int32_t base, int32_t n) {
  std::vector<int32_t> places;
  for (int32_t k = base; k < base + n; ++k)
    if (ListedIn(view, Category(map, map.order[k]))) places.push_back(k);
  return places;
}

void ParentalRows(const ClonalLayout& map, const PairTable& pairs, ClonalView view, int32_t chrom,
                  int32_t base, SummaryTable& table) {
  const std::vector<int32_t> places = ListedPlaces(map, view, base, map.chromosome_sizes[chrom - 1]);
  float position = 0.0f;
  for (std::size_t k = 0; k < places.size(); ++k) {
    SummaryRow row;
    row.chromosome = chrom;
    row.marker = map.order[places[k]];
    if (k > 0) {
      const int32_t before = map.order[places[k - 1]];
      const float r = ViewRec(pairs, view, row.marker, before);
      const bool neighbours = places[k] == places[k - 1] + 1;
      if (!(std::fabs(r - 0.5f) > 0.00000001f) || !neighbours) {
        // The parent says nothing about this interval: the combined map's distance stands in.
        row.interval = map.position[places[k]] - map.position[places[k - 1]];
        row.rec_freq = MapDistanceToRec(map.mapping_function, row.interval);
      } else {
        row.interval = MapRecToDistance(map.mapping_function, r);
        row.rec_freq = r;
      }
      position += row.interval;
    }
    row.position = position;
    table.rows.push_back(row);
  }
  table.chromosome_markers.push_back(static_cast<int32_t>(places.size()));
  table.chromosome_lengths.push_back(places.empty() ? 0.0f : position);
}

// Letters of the four homologues (the first parent's A and B, the second's C and D) at a
// marker whose alleles stand in the phase of its category text; X where a parent's alleles
// cannot be told apart. With two alleles in both parents, AB=CD and A=CB=D carry the first
// parent's A on C, A=DB=C on D.
std::string HomologueLetters(int32_t category) {
  switch (category) {
    case 1: return "ABCD";
    case 2: return "XXCD";
    case 3: return "ABXX";
    case 4: return "ABAB";
    case 5: return "ABBA";
    default: return "XXXX";
  }
}

// Exchanging a parent's two alleles at a marker, in the stored letters: the first parent's A
// and B turn AC into BC, AD into BD and AX into BX; the second parent's C and D turn AC into
// AD, BC into BD and XC into XD. The types of markers with two alleles in both parents (AA, AB,
// BB) name alleles, not homologues, and stay.
char ExchangeFirst(char g) {
  switch (g) {
    case 'A': return 'C';
    case 'C': return 'A';
    case 'B': return 'D';
    case 'D': return 'B';
    case 'G': return 'H';
    case 'H': return 'G';
    default: return g;
  }
}
char ExchangeSecond(char g) {
  switch (g) {
    case 'A': return 'B';
    case 'B': return 'A';
    case 'C': return 'D';
    case 'D': return 'C';
    case 'E': return 'F';
    case 'F': return 'E';
    default: return g;
  }
}

}  // namespace

// A sign of -1 says that the marker's alleles sit on the parent's homologues the other way
// round from the first marker of the chromosome. The phase code of a pair (1 both parents in
// coupling, 2 the second in repulsion, 3 the first, 4 both) tells whether the sign carries
// over from the marker before.
PhaseSigns ClonalPhaseSigns(const ClonalLayout& map, const PairTable& pairs) {
  PhaseSigns signs;
  signs.first.assign(static_cast<std::size_t>(map.num_mapped), 1);
  signs.second.assign(static_cast<std::size_t>(map.num_mapped), 1);
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    const int32_t n = map.chromosome_sizes[c - 1];
    for (const bool first_parent : {true, false}) {
      std::vector<int8_t>& sign = first_parent ? signs.first : signs.second;
      int32_t before = -1;
      for (int32_t k = base; k < base + n; ++k) {
        const int32_t marker = map.order[k];
        if (Category(map, marker) == (first_parent ? 2 : 3)) continue;  // silent in this parent
        if (before >= 0) {
          const int32_t phase = std::bit_cast<int32_t>(pairs.Word(marker, map.order[before], kPhase));
          const bool repulsion = first_parent ? (phase == 3 || phase == 4) : (phase == 2 || phase == 4);
          sign[k] = static_cast<int8_t>(repulsion ? -sign[before] : sign[before]);
        }
        before = k;
      }
    }
    base += n;
  }
  return signs;
}

bool ListedIn(ClonalView view, int32_t category) {
  if (view == ClonalView::kFirstParent) return category != 2;
  if (view == ClonalView::kSecondParent) return category != 3;
  return true;
}

SummaryTable ClonalSummary(const ClonalLayout& map, const PairTable& pairs, ClonalView view) {
  SummaryTable table;
  table.interference = false;
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    const int32_t n = map.chromosome_sizes[c - 1];
    if (view == ClonalView::kCombined) {
      for (int32_t k = 0; k < n; ++k) {
        SummaryRow row;
        row.chromosome = c;
        row.marker = map.order[base + k];
        row.position = map.position[base + k];
        if (k > 0) {
          row.interval = map.position[base + k] - map.position[base + k - 1];
          row.rec_freq = pairs.Word(row.marker, map.order[base + k - 1], kCombinedRec);
        }
        table.rows.push_back(row);
      }
      table.chromosome_markers.push_back(n);
      table.chromosome_lengths.push_back(n > 0 ? map.position[base + n - 1] - map.position[base] : 0.0f);
    } else {
      ParentalRows(map, pairs, view, c, base, table);
    }
    base += n;
  }
  const std::size_t linked = static_cast<std::size_t>(map.num_mapped);
  for (std::size_t k = linked; k < map.order.size(); ++k) {
    const int32_t marker = map.order[k];
    if (!ListedIn(view, Category(map, marker))) continue;
    if (k < linked + static_cast<std::size_t>(map.num_unlinked)) table.unlinked.push_back(marker);
    else table.deleted.push_back(marker);
  }
  return table;
}

std::string ClonalMatrixReport(const ClonalLayout& map, const PairTable& pairs, ClonalView view,
                               ClonalMatrix which) {
  std::vector<int32_t> listed;
  for (int32_t k = 0; k < map.num_mapped; ++k)
    if (ListedIn(view, Category(map, map.order[k]))) listed.push_back(map.order[k]);
  return PairMatrixText(map, listed, [&](int32_t mi, int32_t mj) {
    switch (which) {
      case ClonalMatrix::kLod: return ViewLod(pairs, view, mi, mj);
      case ClonalMatrix::kRec: return ViewRec(pairs, view, mi, mj);
      default: return MapRecToDistance(map.mapping_function, ViewRec(pairs, view, mi, mj));
    }
  });
}

std::string ClonalMtpReport(const ClonalLayout& map) {
  std::string out = A("MarkerID", 12) + " " + A("MarkerName", 35);
  for (const char* word : {"Size(AC)", "Size(AD)", "Size(BC)", "Size(BD)", "Size(XC)", "Size(XD)",
                           "Size(AX)", "Size(BX)", "Size(AA)", "Size(AB)", "Size(BB)", "Size(XX)",
                           "Chi-Square", "Pr>ChiSq", "Category"})
    out += A(word, 12);
  out += "\n";
  for (int32_t row = 0; row < map.num_mapped; ++row) {
    const int32_t m = map.order[row];
    const ClonalCounts counts = CountClonalTypes(map.TypesOf(m), map.num_individuals);
    const ClonalSegregation test = ClonalSegregationChiSquare(Category(map, m), counts);
    out += I(m, 12) + " " + A(TrimRight(map.marker_names[m - 1]), 35);
    for (int32_t count : counts) out += I(count, 12);
    out += F(test.chi_square, 12, 4) + F(test.probability, 12, 4) +
           A(ClonalCategoryText(map.population_type, Category(map, m)), 12) + "\n";
  }
  return out;
}

// The rewriting of a marker with sign -1:
//  - first parent, ABCD and C=D: the homologue letters A and B change places and the types
//    change their first allele (AC and BC, AD and BD, AX and BX);
//  - second parent, ABCD and A=B: C and D change places, and so do AC and AD, BC and BD, XC
//    and XD;
//  - second parent, two alleles in both parents: the letters of C and D change places, and in
//    the double cross the category turns from A=CB=D into A=DB=C or back; the types name
//    alleles and stay. The clonal F1 has one text, AB=CD, for both phases, so only the
//    letters show it;
//  - first parent, two alleles in both parents: nothing is rewritten.
Haplotypes ClonalHaplotypes(const ClonalLayout& map, const PhaseSigns& signs, const std::string& genotypes) {
  Haplotypes out;
  out.genotypes = genotypes;
  out.text = A("ChromosomeID", 12) + " " + A("ChromosomeName", 19) + " " + A("MarkerName", 35);
  for (const char* word : {"Category", "HaploidA", "HaploidB", "HaploidC", "HaploidD", "NewCategory"})
    out.text += A(word, 12);
  out.text += "\n";
  const int64_t individuals = map.num_individuals;
  int32_t base = 0;
  for (int32_t c = 1; c <= map.NumChromosomes(); ++c) {
    const int32_t n = map.chromosome_sizes[c - 1];
    for (int32_t k = 0; k < n; ++k) {
      const int32_t marker = map.order[base + k];
      int32_t category = Category(map, marker);
      const std::string_view old_text = ClonalCategoryText(map.population_type, category);
      std::string letters = HomologueLetters(category);
      char* g = out.genotypes.data() + static_cast<int64_t>(base + k) * individuals;
      const bool two_alleles = category == 4 || category == 5;
      if (signs.first[base + k] < 0 && !two_alleles) {
        std::swap(letters[0], letters[1]);
        for (int64_t i = 0; i < individuals; ++i) g[i] = ExchangeFirst(g[i]);
      }
      if (signs.second[base + k] < 0) {
        std::swap(letters[2], letters[3]);
        if (two_alleles) {
          if (map.population_type != 1) category = category == 4 ? 5 : 4;
        } else {
          for (int64_t i = 0; i < individuals; ++i) g[i] = ExchangeSecond(g[i]);
        }
      }
      const std::string_view new_text = ClonalCategoryText(map.population_type, category);
      out.new_categories.emplace_back(new_text);
      out.text += I(c, 12) + " " + A(map.chromosome_names[c - 1], 19) + " " +
                  A(map.marker_names[marker - 1], 35) + A(old_text, 12);
      for (char letter : letters) out.text += A(std::string(1, letter), 12);
      out.text += A(new_text, 12) + "\n";
    }
    base += n;
  }
  return out;
}

}  // namespace gae
