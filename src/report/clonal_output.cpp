#include "report/clonal_output.h"

#include "report/clonal_downstream.h"
#include "report/clonal_reports.h"
#include "report/summary_text.h"
#include "report/text_file.h"

namespace gae {

int64_t WriteClonalResults(const ClonalLayout& map, const PairTable& pairs, ResultFiles& files,
                           const ResultSwitches& switches, UniformStream& random,
                           const std::vector<GenotypeCell>* suspects) {
  struct View {
    ClonalView view;
    const char* suffix;  // after .sum, .lod, .rec, .dis
  };
  const View views[] = {{ClonalView::kCombined, ""}, {ClonalView::kFirstParent, "f"},
                        {ClonalView::kSecondParent, "m"}};
  for (const View& v : views)
    files.Write(std::string(".sum") + v.suffix, SummaryText(map, ClonalSummary(map, pairs, v.view)));
  files.Write(".mtp", ClonalMtpReport(map));
  for (const View& v : views) {
    if (switches.lod)
      files.Write(std::string(".lod") + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kLod));
    if (switches.rec)
      files.Write(std::string(".rec") + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kRec));
    if (switches.dis)
      files.Write(std::string(".dis") + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kDis));
  }
  return WriteClonalDownstreamFiles(map, pairs, files, switches.qtl_files, random, suspects);
}

}  // namespace gae
