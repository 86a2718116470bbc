#include "report/map_downstream.h"

#include <vector>

#include "errorscan/err_report.h"
#include "errorscan/error_scan.h"
#include "input/chromosome_record.h"
#include "report/downstream_files.h"
#include "report/text_file.h"

namespace gae {

namespace {

LinkedMapRecord LinkedRecord(const MapLayout& map) {
  LinkedMapRecord record;
  record.population_type = map.population_type;
  record.mapping_function = map.mapping_function;
  record.space_type = map.space_type;
  record.num_individuals = map.num_individuals;
  record.chromosome_names = map.chromosome_names;
  record.chromosome_sizes = map.chromosome_sizes;
  for (int32_t k = 0; k < map.num_mapped; ++k)
    record.marker_names.push_back(map.marker_names[map.order[k] - 1]);
  record.positions = map.position;
  return record;
}

std::vector<ChromosomeRecord> Chromosomes(const MapLayout& map, const LinkedMapRecord& record) {
  std::vector<ChromosomeRecord> chromosomes(map.NumChromosomes());
  int32_t k = 0;
  for (int32_t c = 0; c < map.NumChromosomes(); ++c) {
    for (int32_t n = 0; n < map.chromosome_sizes[c]; ++n, ++k) {
      chromosomes[c].marker_names.push_back(record.marker_names[k]);
      chromosomes[c].positions.push_back(record.positions[k]);
    }
  }
  return chromosomes;
}

}  // namespace

int64_t WriteMapDownstreamFiles(const MapLayout& map, bool write_qtl_files, UniformStream& random,
                                ResultFiles& files) {
  const LinkedMapRecord record = LinkedRecord(map);
  // The linked markers' genotypes and classes in map order: what the QTL tools and the scan see.
  std::string input;
  std::vector<int32_t> classes, numbers;
  for (int32_t k = 0; k < map.num_mapped; ++k) {
    const int32_t marker = map.order[k];
    input.append(map.TypesOf(marker), map.num_individuals);
    classes.push_back(map.marker_class[marker - 1]);
    numbers.push_back(marker);
  }
  if (write_qtl_files) {
    files.Write(".sdl", SdlText(record, input));
    files.Write(".bip", BipText(record, input));
    files.Write(".met", MetText(record, input));
  }
  std::string corrected = input;
  const std::vector<ChromosomeRecord> chromosomes = Chromosomes(map, record);
  const PopulationModel model{kBiparentalDesign, map.population_type, map.mapping_function};
  const int64_t flagged = ErrorScan(model, map.num_individuals, chromosomes, classes,
                                    std::span<char>(corrected.data(), corrected.size()), random);
  const std::vector<uint8_t> lost = MonomorphicMarkers(corrected, map.num_individuals);
  files.Write("EC.map", EcMapText(record, corrected, lost));
  files.Write(".err", ErrReportText(map.num_individuals, record.marker_names, numbers, input, corrected));
  return flagged;
}

}  // namespace gae
