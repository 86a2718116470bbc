#include "errorscan/error_scan.h"

#include <string>

#include "errorscan/genotype_draws.h"
#include "errorscan/imputation.h"
#include "errorscan/table_cache.h"

namespace gae {

namespace {

template <class TableSource>
bool CheckTripleUsing(const PopulationModel& model, char left, char& middle, char right,
                      TableSource&& table_source, UniformStream& random) {
  if (middle == left || middle == right) return false;
  float p = 1.0f;
  TripleIndex index;
  if (IndexTriple(model.design, model.type, left, middle, right, index)) {
    const ThreeLocusTable& table = table_source();
    if (table.num_states > 0) p = table.At(index.pair, index.middle);
  }
  const float u = random.Next();
  if (u > p) {
    middle = 'X';
    return true;
  }
  return false;
}

}  // namespace

bool CheckTriple(const PopulationModel& model, float left_position, float middle_position,
                 float right_position, char left, char& middle, char right, UniformStream& random) {
  ThreeLocusTable table;
  auto build = [&]() -> const ThreeLocusTable& {
    table = ThreeLocusProbabilities(model.design, model.type, model.mapping_function, left_position,
                                    middle_position, right_position);
    return table;
  };
  return CheckTripleUsing(model, left, middle, right, build, random);
}

int64_t ErrorScan(const PopulationModel& model, int32_t num_individuals,
                  std::span<const ChromosomeRecord> chromosomes,
                  std::span<const int32_t> marker_classes, std::span<char> genotypes,
                  UniformStream& random) {
  const std::vector<float> positions = MapPositions(chromosomes);
  const std::size_t n = num_individuals > 0 ? static_cast<std::size_t>(num_individuals) : 0;
  if (n == 0 || genotypes.size() < positions.size() * n || marker_classes.size() < positions.size()) return 0;
  TableCache cache(model, positions);

  std::string working(genotypes.begin(), genotypes.end());
  std::span<char> work(working.data(), working.size());
  RewritePartialCodes(model.design, marker_classes, num_individuals, work);
  ImputeGenotypes(model, num_individuals, chromosomes, marker_classes, work, random, cache);

  int64_t flagged = 0;
  for (std::size_t i = 0; i < n; ++i) {
    std::size_t first = 0;
    for (const ChromosomeRecord& chrom : chromosomes) {
      const std::size_t count = static_cast<std::size_t>(chrom.NumMarkers());
      for (std::size_t m = first + 1; m + 1 < first + count; ++m) {
        std::size_t left = m;
        while (left > first && work[(left - 1) * n + i] == 'X') --left;
        if (left == first) continue;  // every marker to the left has been flagged
        --left;
        const std::size_t right = m + 1;
        char& middle = work[m * n + i];
        auto table = [&]() -> const ThreeLocusTable& {
          return cache.Triple(static_cast<int32_t>(left), static_cast<int32_t>(m), static_cast<int32_t>(right));
        };
        CheckTripleUsing(model, work[left * n + i], middle, work[right * n + i], table, random);
        if (middle == 'X') {
          if (genotypes[m * n + i] != 'X') ++flagged;
          genotypes[m * n + i] = 'X';
        }
      }
      first += count;
    }
  }
  return flagged;
}

std::vector<uint8_t> MonomorphicMarkers(std::string_view genotypes, int32_t num_individuals,
                                        std::string_view letters) {
  std::vector<uint8_t> flags;
  if (num_individuals <= 0) return flags;
  const std::size_t n = static_cast<std::size_t>(num_individuals);
  for (std::size_t start = 0; start + n <= genotypes.size(); start += n) {
    const std::string_view marker = genotypes.substr(start, n);
    std::size_t missing = 0;
    for (char g : marker) missing += (g == 'X');
    bool lost = false;
    for (char letter : letters) {
      std::size_t count = 0;
      for (char g : marker) count += (g == letter);
      lost = lost || missing + count == n;
    }
    flags.push_back(lost ? 1 : 0);
  }
  return flags;
}

}  // namespace gae
