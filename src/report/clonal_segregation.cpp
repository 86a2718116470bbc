#include "report/clonal_segregation.h"

#include <cmath>
#include <span>

#include "vocabulary/chi_square.h"

namespace gae {

ClonalCounts CountClonalTypes(const char* types, int64_t num_individuals) {
  ClonalCounts counts{};
  for (int64_t i = 0; i < num_individuals; ++i) {
    const char g = types[i];
    if (g >= 'A' && g <= 'K') ++counts[g - 'A'];
    else if (g == 'X') ++counts[11];
  }
  return counts;
}

ClonalSegregation ClonalSegregationChiSquare(int32_t category, const ClonalCounts& counts) {
  struct Class {
    int index;
    float share;
  };
  static constexpr Class kFour[] = {{0, 0.25f}, {1, 0.25f}, {2, 0.25f}, {3, 0.25f}};
  static constexpr Class kFirstSilent[] = {{4, 0.5f}, {5, 0.5f}};
  static constexpr Class kSecondSilent[] = {{6, 0.5f}, {7, 0.5f}};
  static constexpr Class kTwoAlleles[] = {{8, 0.25f}, {9, 0.5f}, {10, 0.25f}};
  std::span<const Class> classes = kTwoAlleles;
  int df = 2;
  switch (category) {
    case 1: classes = kFour; df = 3; break;
    case 2: classes = kFirstSilent; df = 1; break;
    case 3: classes = kSecondSilent; df = 1; break;
    default: break;
  }
  float n = 0.0f;
  for (const Class& c : classes) n += static_cast<float>(counts[c.index]);
  ClonalSegregation out;
  for (const Class& c : classes) {
    const float expected = n * c.share;
    const float d = static_cast<float>(counts[c.index]) - expected;
    out.chi_square += d * d / expected;
  }
  out.probability = std::isnan(out.chi_square) ? 0.0f : 1.0f - CHIDF(out.chi_square, static_cast<float>(df));
  return out;
}

std::string_view ClonalCategoryText(int32_t population_type, int32_t category) {
  switch (category) {
    case 1: return "ABCD";
    case 2: return "A=B";
    case 3: return "C=D";
    case 4: return population_type == 1 ? "AB=CD" : "A=CB=D";
    case 5: return "A=DB=C";
    default: return "";
  }
}

}  // namespace gae
