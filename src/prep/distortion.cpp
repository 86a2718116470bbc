#include "prep/distortion.h"

#include <algorithm>
#include <string>

#include "vocabulary/chi_square.h"
#include "report/segregation.h"
#include "input/tool_codes.h"

namespace gae {

namespace {

struct ExpectedClass {
  char letter;
  float ratio;
};

float GoodnessOfFit(const std::vector<ExpectedClass>& classes, const char* letters, int32_t n) {
  std::vector<int32_t> observed(classes.size(), 0);
  int32_t typed = 0;
  for (int32_t i = 0; i < n; ++i)
    for (std::size_t k = 0; k < classes.size(); ++k)
      if (letters[i] == classes[k].letter) {
        ++observed[k];
        ++typed;
      }
  if (typed == 0 || classes.size() < 2) return 1.0f;
  float chi = 0.0f;
  for (std::size_t k = 0; k < classes.size(); ++k) {
    const float expected = static_cast<float>(typed) * classes[k].ratio;
    const float d = static_cast<float>(observed[k]) - expected;
    chi += d * d / expected;
  }
  return 1.0f - CHIDF(chi, static_cast<float>(classes.size() - 1));
}

std::vector<ExpectedClass> ClonalClasses(int32_t category) {
  switch (category) {
    case 1: return {{'A', 0.25f}, {'B', 0.25f}, {'C', 0.25f}, {'D', 0.25f}};
    case 2: return {{'E', 0.5f}, {'F', 0.5f}};
    case 3: return {{'G', 0.5f}, {'H', 0.5f}};
    default: return {{'I', 0.25f}, {'J', 0.5f}, {'K', 0.25f}};
  }
}

// Founders that share an allele share a letter, that of the first of them.
std::vector<ExpectedClass> FounderClasses(int32_t pattern) {
  const std::string digits = std::to_string(pattern);
  std::vector<ExpectedClass> classes;
  for (std::size_t k = 0; k < digits.size(); ++k) {
    if (digits[k] - '0' != static_cast<int>(k + 1)) continue;
    const auto share = std::count(digits.begin(), digits.end(), digits[k]);
    classes.push_back({static_cast<char>('A' + k),
                       static_cast<float>(share) / static_cast<float>(digits.size())});
  }
  return classes;
}

}  // namespace

std::vector<float> SegregationPValues(int tool_code, int32_t population_type,
                                      std::span<const int32_t> categories, const char* letters,
                                      int32_t num_individuals) {
  std::vector<float> p(categories.size(), 1.0f);
  for (std::size_t m = 0; m < categories.size(); ++m) {
    const char* row = letters + m * static_cast<std::size_t>(num_individuals);
    if (tool_code == kClonalToolCode) {
      p[m] = GoodnessOfFit(ClonalClasses(categories[m]), row, num_individuals);
    } else if (tool_code == kPureLineToolCode) {
      p[m] = GoodnessOfFit(FounderClasses(categories[m]), row, num_individuals);
    } else {
      const SegregationTest test = SegregationChiSquare(population_type, categories[m], row, num_individuals);
      if (test.tested && test.chi_square == test.chi_square) p[m] = test.probability;
    }
  }
  return p;
}

}  // namespace gae
