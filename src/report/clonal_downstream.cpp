#include "report/clonal_downstream.h"

#include <vector>

#include "errorscan/err_report.h"
#include "errorscan/error_scan.h"
#include "report/clonal_reports.h"
#include "report/clonal_segregation.h"
#include "report/downstream_files.h"
#include "report/text_file.h"

namespace gae {

namespace {

// Any one stored type with the missing ones covering every individual leaves a marker without
// segregation in its category, as the reader of the input files would refuse it.
constexpr const char* kClonalLetters = "ABCDEFGHIJK";

// The flanking-marker tables of the scan read every marker in the phase of its neighbours, so
// the scan sees the genotypes brought into one phase. An AB=CD, A=CB=D or A=DB=C marker keeps
// its types; its scan class carries its phases instead: with the second parent's homologues
// read the other way round it is scanned as A=DB=C (or back), and with the first parent's the
// AA and BB types change places.
void PrepareScan(const ClonalLayout& map, const PhaseSigns& signs, std::string& genotypes,
                 std::vector<int32_t>& classes) {
  for (int32_t k = 0; k < map.num_mapped; ++k) {
    const int32_t category = map.category[map.order[k] - 1];
    classes.push_back(category);
    if (category != 4 && category != 5) continue;
    const bool first = signs.first[k] < 0;
    const bool second = (signs.second[k] < 0) != (category == 5);
    classes.back() = first == second ? 4 : 5;
    if (!first) continue;
    char* g = genotypes.data() + static_cast<int64_t>(k) * map.num_individuals;
    for (int32_t i = 0; i < map.num_individuals; ++i) {
      if (g[i] == 'I') g[i] = 'K';
      else if (g[i] == 'K') g[i] = 'I';
    }
  }
}

// `to` takes an X wherever the scan set a cell of `scanned` to X.
void CopyFlags(const std::string& before, const std::string& scanned, std::string& to) {
  for (std::size_t k = 0; k < to.size(); ++k)
    if (scanned[k] == 'X' && before[k] != 'X') to[k] = 'X';
}

// The calls the map found suspect set to missing in `genotypes` (rows of the markers `numbers`);
// returns how many were not missing already.
int64_t SetSuspectsMissing(const std::vector<int32_t>& numbers, int32_t num_individuals,
                           const std::vector<GenotypeCell>& suspects, std::string& genotypes) {
  std::vector<int64_t> row_of;
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    if (row_of.size() <= static_cast<std::size_t>(numbers[k])) row_of.resize(static_cast<std::size_t>(numbers[k]) + 1, -1);
    row_of[static_cast<std::size_t>(numbers[k])] = static_cast<int64_t>(k);
  }
  int64_t flagged = 0;
  for (const GenotypeCell& cell : suspects) {
    if (cell.marker < 1 || static_cast<std::size_t>(cell.marker) >= row_of.size() || row_of[static_cast<std::size_t>(cell.marker)] < 0 ||
        cell.individual < 0 || cell.individual >= num_individuals)
      continue;
    char& call = genotypes[static_cast<std::size_t>(row_of[static_cast<std::size_t>(cell.marker)] * num_individuals + cell.individual)];
    if (call != 'X') {
      call = 'X';
      ++flagged;
    }
  }
  return flagged;
}

}  // namespace

int64_t WriteClonalDownstreamFiles(const ClonalLayout& map, const PairTable& pairs,
                                   ResultFiles& files, bool write_qtl_file,
                                   UniformStream& random, const std::vector<GenotypeCell>* suspects) {
  const LinkedMapRecord record = LinkedRecord(map);
  std::string input;
  std::vector<int32_t> numbers;
  std::vector<std::string> category_texts;
  for (int32_t k = 0; k < map.num_mapped; ++k) {
    const int32_t marker = map.order[k];
    input.append(map.TypesOf(marker), map.num_individuals);
    category_texts.emplace_back(ClonalCategoryText(map.population_type, map.category[marker - 1]));
    numbers.push_back(marker);
  }
  const std::vector<ChromosomeRecord> chromosomes = LinkedChromosomes(record);

  const bool mapped_phases = map.phase_first.size() == static_cast<std::size_t>(map.num_mapped) &&
                             map.phase_second.size() == static_cast<std::size_t>(map.num_mapped);
  const PhaseSigns signs = mapped_phases ? PhaseSigns{map.phase_first, map.phase_second} : ClonalPhaseSigns(map, pairs);
  const Haplotypes phased = ClonalHaplotypes(map, signs, input);
  std::string scanned = phased.genotypes;
  std::vector<int32_t> classes;
  PrepareScan(map, signs, scanned, classes);
  const std::string before_scan = scanned;
  std::string corrected = input;
  int64_t flagged = 0;
  if (suspects != nullptr) {
    flagged = SetSuspectsMissing(numbers, map.num_individuals, *suspects, corrected);
  } else {
    const PopulationModel model{kClonalDesign, map.population_type, map.mapping_function};
    flagged = ErrorScan(model, map.num_individuals, chromosomes, classes,
                        std::span<char>(scanned.data(), scanned.size()), random);
    CopyFlags(before_scan, scanned, corrected);
  }
  const std::vector<uint8_t> lost = MonomorphicMarkers(corrected, map.num_individuals, kClonalLetters);
  files.Write("EC.cdm", EcCdmText(record, category_texts, corrected, lost));
  files.Write(".hap", phased.text);
  // The QTL file carries the genotypes as read, as every tool's QTL files do: the scan's flags
  // are random draws against the map, meant for a second mapping run (EC.cdm), and would make
  // a QTL analysis depend on the random stream. Only the phase is put right: a clonal parent's
  // two homologues have no names of their own, and an allele effect along a chromosome means
  // something only when every marker calls the same homologue A (and C).
  if (write_qtl_file) files.Write(".cdq", CdqText(record, phased.new_categories, phased.genotypes));
  files.Write(".err",
                ErrReportText(map.num_individuals, record.marker_names, numbers, input, corrected));
  return flagged;
}

}  // namespace gae
