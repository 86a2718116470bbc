#include "report/map_downstream.h"

#include <vector>

#include "errorscan/err_report.h"
#include "errorscan/error_scan.h"
#include "vocabulary/population.h"
#include "report/downstream_files.h"
#include "report/pure_line_segregation.h"
#include "report/text_file.h"

namespace gae {

namespace {

// The linked markers' genotypes, classes and input numbers in map order: what the downstream
// tools and the scan see.
struct LinkedData {
  LinkedMapRecord record;
  std::string input;
  std::vector<int32_t> classes, numbers;
};

LinkedData Linked(const MapLayout& map) {
  LinkedData data{LinkedRecord(map), {}, {}, {}};
  for (int32_t k = 0; k < map.num_mapped; ++k) {
    const int32_t marker = map.order[k];
    data.input.append(map.TypesOf(marker), map.num_individuals);
    data.classes.push_back(map.marker_class[marker - 1]);
    data.numbers.push_back(marker);
  }
  return data;
}

// The scan on a copy of the input genotypes; returns the corrected copy and the count flagged.
std::string Scanned(const MapLayout& map, const LinkedData& data, int32_t design, UniformStream& random,
                    int64_t& flagged) {
  std::string corrected = data.input;
  const std::vector<ChromosomeRecord> chromosomes = LinkedChromosomes(data.record);
  const PopulationModel model{design, map.population_type, map.mapping_function};
  flagged = ErrorScan(model, map.num_individuals, chromosomes, data.classes,
                      std::span<char>(corrected.data(), corrected.size()), random);
  return corrected;
}

void WriteErrReport(const MapLayout& map, const LinkedData& data, const std::string& corrected,
                    ResultFiles& files) {
  files.Write(".err", ErrReportText(map.num_individuals, data.record.marker_names, data.numbers,
                                    data.input, corrected));
}


// The input genotypes with the suspect cells set to missing; `flagged` counts the calls that
// were not missing already.
std::string WithSuspectsMissing(const MapLayout& map, const LinkedData& data, const std::vector<GenotypeCell>& suspects,
                                int64_t& flagged) {
  std::vector<int64_t> row_of(static_cast<size_t>(map.num_markers) + 1, -1);
  for (size_t k = 0; k < data.numbers.size(); ++k) row_of[static_cast<size_t>(data.numbers[k])] = static_cast<int64_t>(k);
  std::string corrected = data.input;
  flagged = 0;
  for (const GenotypeCell& cell : suspects) {
    if (cell.marker < 1 || cell.marker > map.num_markers || cell.individual < 0 ||
        cell.individual >= map.num_individuals || row_of[static_cast<size_t>(cell.marker)] < 0)
      continue;
    char& call = corrected[static_cast<size_t>(row_of[static_cast<size_t>(cell.marker)] * map.num_individuals +
                                               cell.individual)];
    if (call != 'X') {
      call = 'X';
      ++flagged;
    }
  }
  return corrected;
}

}  // namespace


int64_t WriteMapDownstreamFiles(const MapLayout& map, bool write_qtl_files, UniformStream& random,
                                ResultFiles& files, const std::vector<GenotypeCell>* suspects) {
  const LinkedData data = Linked(map);
  if (write_qtl_files) {
    files.Write(".sdl", SdlText(data.record, data.input));
    files.Write(".bip", BipText(data.record, data.input));
    files.Write(".met", MetText(data.record, data.input));
  }
  int64_t flagged = 0;
  const std::string corrected = suspects != nullptr ? WithSuspectsMissing(map, data, *suspects, flagged)
                                                    : Scanned(map, data, kBiparentalDesign, random, flagged);
  const std::vector<uint8_t> lost = MonomorphicMarkers(corrected, map.num_individuals);
  files.Write("EC.map", EcMapText(data.record, corrected, lost));
  WriteErrReport(map, data, corrected, files);
  return flagged;
}

int64_t WritePlmDownstreamFiles(const MapLayout& map, bool write_qtl_files, UniformStream& random,
                                ResultFiles& files, const std::vector<GenotypeCell>* suspects) {
  const int founders = PureLineFounders(map.population_type);
  const LinkedData data = Linked(map);
  std::vector<std::string> categories;
  for (int32_t pattern : data.classes) categories.push_back(PureLinePatternField(founders, pattern));
  if (write_qtl_files) files.Write(".plq", PlqText(data.record, categories, data.input));
  int64_t flagged = 0;
  const int32_t design = founders == 8 ? kEightWayDesign : kFourWayDesign;
  const std::string corrected = suspects != nullptr ? WithSuspectsMissing(map, data, *suspects, flagged)
                                                    : Scanned(map, data, design, random, flagged);
  // A line shows a founder letter or X: a marker whose lines show one letter and X has lost
  // its polymorphism.
  const std::string_view letters = std::string_view("ABCDEFGH").substr(0, founders);
  const std::vector<uint8_t> lost = MonomorphicMarkers(corrected, map.num_individuals, letters);
  files.Write("EC.plm", EcPlmText(data.record, categories, corrected, lost));
  WriteErrReport(map, data, corrected, files);
  return flagged;
}

}  // namespace gae
