#include "errorscan/imputation.h"

#include <string>

#include "errorscan/genotype_draws.h"
#include "errorscan/two_locus_probabilities.h"

namespace gae {

std::vector<float> MapPositions(std::span<const ChromosomeRecord> chromosomes) {
  std::vector<float> positions;
  for (const ChromosomeRecord& c : chromosomes) positions.insert(positions.end(), c.positions.begin(), c.positions.end());
  return positions;
}

namespace {

// One draw among `letters` with the given weights, narrowed to what the observation allows.
char DrawAllowed(int32_t design, std::string_view letters, std::vector<float> weights,
                 const std::string& allowed, UniformStream& random) {
  bool any_allowed = false;
  for (char c : letters) any_allowed = any_allowed || allowed.find(c) != std::string::npos;
  if (!allowed.empty() && any_allowed) {
    float kept = 0.0f;
    for (std::size_t s = 0; s < letters.size(); ++s) {
      if (allowed.find(letters[s]) == std::string::npos) weights[s] = 0.0f;
      else kept += weights[s];
    }
    if (!(kept > 0.0f))
      for (std::size_t s = 0; s < letters.size(); ++s)
        weights[s] = allowed.find(letters[s]) == std::string::npos ? 0.0f : 1.0f;
  }
  return letters[DrawGenotype(design, weights, random)];
}

struct ChromosomeView {
  int32_t first = 0;  // index of its first marker among the linked markers
  int32_t size = 0;
};

class Imputer {
 public:
  Imputer(const PopulationModel& model, int32_t num_individuals, std::span<const int32_t> classes,
          std::span<char> genotypes, UniformStream& random, TableCache& cache)
      : model_(model), n_(num_individuals), classes_(classes), genotypes_(genotypes), random_(random),
        cache_(cache), states_(StateLetters(model.design, model.type)) {}

  void Fill(int32_t individual, ChromosomeView chrom) {
    if (chrom.size == 0) return;
    individual_ = individual;
    // next[k]: the first informative marker at k or to its right (chrom.size: none).
    std::vector<int32_t> next(chrom.size + 1, chrom.size);
    for (int32_t k = chrom.size - 1; k >= 0; --k)
      next[k] = IsInformative(model_.design, classes_[chrom.first + k], Cell(chrom.first + k)) ? k : next[k + 1];
    if (next[0] != 0) FillFirst(chrom, next[1]);
    for (int32_t m = 1; m < chrom.size; ++m) {
      if (next[m] == m) continue;
      FillLater(chrom.first + m, next[m + 1] < chrom.size ? chrom.first + next[m + 1] : -1);
    }
  }

 private:
  char& Cell(int32_t marker) { return genotypes_[static_cast<std::size_t>(marker) * n_ + individual_]; }
  int32_t NumStates() const { return static_cast<int32_t>(states_.size()); }

  void Set(int32_t marker, std::string_view letters, std::vector<float> weights) {
    const std::string allowed = AllowedStates(model_.design, classes_[marker], Cell(marker));
    Cell(marker) = DrawAllowed(model_.design, letters, std::move(weights), allowed, random_);
  }

  void DrawMarginal(int32_t marker) {
    Set(marker, MarginalLetters(model_.design, model_.type), MarginalProbabilities(model_.design, model_.type));
  }

  void FillFirst(ChromosomeView chrom, int32_t informative) {
    const int32_t first = chrom.first;
    const int32_t right = informative < chrom.size ? StateOf(states_, Cell(first + informative)) : -1;
    if (right < 0) return DrawMarginal(first);
    const std::vector<float>& pair = cache_.Pair(first, first + informative);
    std::vector<float> weights(NumStates());
    for (int32_t s = 0; s < NumStates(); ++s) weights[s] = pair[FlankPairIndex(model_.design, NumStates(), s, right)];
    Set(first, states_, std::move(weights));
  }

  void FillLater(int32_t marker, int32_t informative) {
    const int32_t left = StateOf(states_, Cell(marker - 1));
    if (left < 0) return DrawMarginal(marker);
    const int32_t right = informative >= 0 ? StateOf(states_, Cell(informative)) : -1;
    std::vector<float> weights(NumStates());
    if (right < 0) {
      const std::vector<float>& pair = cache_.Pair(marker - 1, marker);
      for (int32_t s = 0; s < NumStates(); ++s) weights[s] = pair[FlankPairIndex(model_.design, NumStates(), left, s)];
    } else {
      const ThreeLocusTable& triple = cache_.Triple(marker - 1, marker, informative);
      const int32_t pair = FlankPairIndex(model_.design, NumStates(), left, right);
      for (int32_t s = 0; s < NumStates(); ++s) weights[s] = triple.At(pair, s);
    }
    Set(marker, states_, std::move(weights));
  }

  PopulationModel model_;
  int32_t n_;
  std::span<const int32_t> classes_;
  std::span<char> genotypes_;
  UniformStream& random_;
  TableCache& cache_;
  std::string_view states_;
  int32_t individual_ = 0;
};

}  // namespace

void ImputeGenotypes(const PopulationModel& model, int32_t num_individuals,
                     std::span<const ChromosomeRecord> chromosomes,
                     std::span<const int32_t> marker_classes, std::span<char> genotypes,
                     UniformStream& random, TableCache& cache) {
  if (StateLetters(model.design, model.type).empty() || num_individuals <= 0) return;
  std::vector<ChromosomeView> views;
  int32_t first = 0;
  for (const ChromosomeRecord& c : chromosomes) {
    views.push_back({first, c.NumMarkers()});
    first += c.NumMarkers();
  }
  if (marker_classes.size() < static_cast<std::size_t>(first) ||
      genotypes.size() < static_cast<std::size_t>(first) * num_individuals)
    return;
  Imputer imputer(model, num_individuals, marker_classes, genotypes, random, cache);
  for (int32_t i = 0; i < num_individuals; ++i)
    for (const ChromosomeView& view : views) imputer.Fill(i, view);
}

void ImputeGenotypes(const PopulationModel& model, int32_t num_individuals,
                     std::span<const ChromosomeRecord> chromosomes,
                     std::span<const int32_t> marker_classes, std::span<char> genotypes,
                     UniformStream& random) {
  const std::vector<float> positions = MapPositions(chromosomes);
  TableCache cache(model, positions);
  ImputeGenotypes(model, num_individuals, chromosomes, marker_classes, genotypes, random, cache);
}

}  // namespace gae
