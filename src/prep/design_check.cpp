#include "prep/design_check.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "input/biparental_calls.h"
#include "report/segregation.h"
#include "vocabulary/population.h"

namespace gae {

namespace {

// Residual heterozygosity of inbred lines and a few scoring errors are normal; a larger share
// of calls that the type cannot show says the type is wrong.
constexpr double kHiddenShare = 0.10;

constexpr int32_t kTypes = 20;

int Percent(double share) { return static_cast<int>(std::lround(100.0 * share)); }

std::string ShortName(int32_t type) {
  const std::string name(PopulationName(kBiparentalDesign, type));
  return name.substr(0, name.find(" or "));
}

}  // namespace

std::string TypeWithArticle(int32_t population_type) {
  const std::string name = ShortName(population_type);
  std::string text = !name.empty() && name[0] == 'F' ? "an " : "a ";
  text.append(name);
  return text;
}

std::string SegregationRatioText(int32_t population_type) {
  const ClassRatios p = ExpectedRatios(population_type);
  std::vector<int> parts;
  for (const float share : {p.p2, p.p1, p.p0})
    if (share > 0) parts.push_back(static_cast<int>(std::lround(share * 16)));
  int divisor = 0;
  for (const int part : parts) divisor = std::gcd(divisor, part);
  std::string text;
  for (const int part : parts) {
    if (!text.empty()) text += ':';
    text.append(std::to_string(part / std::max(divisor, 1)));
  }
  return text;
}

bool MarkerFitsType(int32_t population_type, const std::string& marker_letters) {
  std::string folded = marker_letters;
  int64_t called = 0, hidden = 0;
  for (char& letter : folded) {
    if (letter == 'X') continue;
    ++called;
    const char kept = FoldBiparentalLetter(population_type, letter);
    if (kept == '\0') return false;
    if (kept != letter) ++hidden;
    letter = kept;
  }
  if (called == 0 || static_cast<double>(hidden) > kHiddenShare * static_cast<double>(called)) return false;
  const int32_t category = BiparentalCategory(population_type, folded);
  if (category == 0) return false;
  const SegregationTest test =
      SegregationChiSquare(population_type, category, folded.data(), static_cast<int64_t>(folded.size()));
  return !test.tested || (!std::isnan(test.chi_square) && test.probability >= kDistortionLevel);
}

DesignVerdict CheckDesign(int32_t declared, const std::vector<std::string>& letters) {
  DesignVerdict v;
  v.declared = declared;
  v.markers = static_cast<int>(letters.size());
  std::vector<int> fit(kTypes + 1, 0);
  for (int32_t type = 1; type <= kTypes; ++type)
    for (std::size_t m = 0; m < letters.size(); ++m) {
      const bool fits = MarkerFitsType(type, letters[m]);
      fit[type] += fits;
      if (type == declared && !fits) v.distorted.push_back(static_cast<int>(m));
    }
  v.fit_declared = declared >= 1 && declared <= kTypes ? fit[declared] : 0;
  const int best = *std::max_element(fit.begin() + 1, fit.end());
  if (best > v.fit_declared) {
    v.fit_better = best;
    for (int32_t type = 1; type <= kTypes; ++type)
      if (fit[type] == best) v.better.push_back(type);
  }
  // The calls the declared type cannot show, or folds to missing, by letter.
  int64_t called = 0, most = 0;
  for (const char letter : std::string("AHBDR")) {
    int64_t count = 0;
    for (const std::string& marker : letters) count += std::count(marker.begin(), marker.end(), letter);
    called += count;
    if (FoldBiparentalLetter(declared, letter) != letter && count > most) {
      most = count;
      v.unseen = letter;
    }
  }
  v.unseen_share = called > 0 ? static_cast<double>(most) / static_cast<double>(called) : 0.0;
  v.wrong_design = 2 * v.fit_declared < v.markers && 2 * v.fit_better > v.markers;
  return v;
}

std::string DesignMessage(const DesignVerdict& v) {
  std::string text;
  const std::string declared = TypeWithArticle(v.declared);
  if (v.unseen != 0 && v.unseen_share >= 0.05) {
    text = std::to_string(Percent(v.unseen_share)) + "% of calls are " + std::string(1, v.unseen) + ", which " +
           declared + " cannot show";
  } else {
    text = std::to_string(Percent(1.0 - static_cast<double>(v.fit_declared) / std::max(v.markers, 1))) +
           "% of the markers reject the " + SegregationRatioText(v.declared) + " segregation of " + declared +
           " (p < 0.001)";
  }
  if (v.better.empty()) return text;
  std::string names;
  const std::size_t shown = std::min<std::size_t>(v.better.size(), 3);
  for (std::size_t k = 0; k < shown; ++k) {
    if (k > 0) names.append(k + 1 == shown ? " or " : ", ");
    names.append(k == 0 ? TypeWithArticle(v.better[k]) : ShortName(v.better[k]));
  }
  text += "; " + names + " fits " + std::to_string(Percent(static_cast<double>(v.fit_better) / std::max(v.markers, 1))) +
          "% of the markers";
  return text;
}

}  // namespace gae
