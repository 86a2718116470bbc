#include "report/tool_results.h"

#include "report/map_downstream.h"
#include "report/map_reports.h"
#include "report/pure_line_reports.h"

namespace gae {

void WriteSharedMapReports(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                           ResultFiles& files) {
  files.Write(".sum", SumReport(map, pairs));
  if (switches.lod) files.Write(".lod", PairMatrixReport(map, pairs, PairMatrix::kLod));
  if (switches.rec) files.Write(".rec", PairMatrixReport(map, pairs, PairMatrix::kRec));
  if (switches.dis) files.Write(".dis", PairMatrixReport(map, pairs, PairMatrix::kDis));
}

int64_t WriteMapResults(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                        UniformStream& random, ResultFiles& files, const std::vector<GenotypeCell>* suspects) {
  WriteSharedMapReports(map, pairs, switches, files);
  files.Write(".mtp", MtpReport(map));
  return WriteMapDownstreamFiles(map, switches.qtl_files, random, files, suspects);
}

int64_t WritePlmResults(const MapLayout& map, const PairTable& pairs, const ResultSwitches& switches,
                        UniformStream& random, ResultFiles& files, const std::vector<GenotypeCell>* suspects) {
  WriteSharedMapReports(map, pairs, switches, files);
  files.Write(".mtp", PlmMtpReport(map));
  return WritePlmDownstreamFiles(map, switches.qtl_files, random, files, suspects);
}

}  // namespace gae
