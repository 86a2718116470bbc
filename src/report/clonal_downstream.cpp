#include "report/clonal_downstream.h"

#include <vector>

#include "errorscan/err_report.h"
#include "errorscan/error_scan.h"
#include "input/chromosome_record.h"
#include "report/clonal_reports.h"
#include "report/clonal_segregation.h"
#include "report/downstream_files.h"
#include "report/text_file.h"

namespace gae {

namespace {

// Any one stored type with the missing ones covering every individual leaves a marker without
// segregation in its category, as the reader of the input files would refuse it.
constexpr const char* kClonalLetters = "ABCDEFGHIJK";

}  // namespace

int64_t WriteClonalDownstreamFiles(const MapLayout& map, const PairTable& pairs,
                                   const std::string& stem, bool write_qtl_file,
                                   UniformStream& random) {
  LinkedMapRecord record;
  record.population_type = map.population_type;
  record.mapping_function = map.mapping_function;
  record.space_type = map.space_type;
  record.num_individuals = map.num_individuals;
  record.chromosome_names = map.chromosome_names;
  record.chromosome_sizes = map.chromosome_sizes;
  record.positions = map.position;
  std::string input;
  std::vector<int32_t> categories, numbers;
  std::vector<std::string> category_texts;
  for (int32_t k = 0; k < map.num_mapped; ++k) {
    const int32_t marker = map.order[k];
    record.marker_names.push_back(map.marker_names[marker - 1]);
    input.append(map.TypesOf(marker), map.num_individuals);
    categories.push_back(map.marker_class[marker - 1]);
    category_texts.emplace_back(ClonalCategoryText(map.population_type, map.marker_class[marker - 1]));
    numbers.push_back(marker);
  }

  std::vector<ChromosomeRecord> chromosomes(map.NumChromosomes());
  for (int32_t c = 0, k = 0; c < map.NumChromosomes(); ++c)
    for (int32_t n = 0; n < map.chromosome_sizes[c]; ++n, ++k) {
      chromosomes[c].marker_names.push_back(record.marker_names[k]);
      chromosomes[c].positions.push_back(record.positions[k]);
    }
  std::string corrected = input;
  const PopulationModel model{kClonalDesign, map.population_type, map.mapping_function};
  const int64_t flagged = ErrorScan(model, map.num_individuals, chromosomes, categories,
                                    std::span<char>(corrected.data(), corrected.size()), random);
  const std::vector<uint8_t> lost = MonomorphicMarkers(corrected, map.num_individuals, kClonalLetters);
  WriteTextFile(stem + "EC.cdm", EcCdmText(record, category_texts, corrected, lost));

  // The QTL file keeps every linked marker of the map. A marker that the scan has left without
  // segregation goes there with its genotypes as read, so that the file stays readable.
  std::string for_phases = corrected;
  for (std::size_t m = 0; m < lost.size(); ++m)
    if (lost[m] != 0)
      for_phases.replace(m * map.num_individuals, map.num_individuals, input, m * map.num_individuals,
                         map.num_individuals);
  const Haplotypes phases = ClonalHaplotypes(map, pairs, for_phases);
  WriteTextFile(stem + ".hap", phases.text);
  if (write_qtl_file) WriteTextFile(stem + ".cdq", CdqText(record, phases.new_categories, phases.genotypes));
  WriteTextFile(stem + ".err",
                ErrReportText(map.num_individuals, record.marker_names, numbers, input, corrected));
  return flagged;
}

}  // namespace gae
