#include "report/clonal_output.h"

#include "report/clonal_downstream.h"
#include "report/clonal_reports.h"
#include "report/summary_text.h"
#include "report/text_file.h"

namespace gae {

void WriteClonalResults(const ClonalLayout& map, const PairTable& pairs, const std::string& stem,
                        const ClonalOutputSwitches& switches, UniformStream& random) {
  struct View {
    ClonalView view;
    const char* suffix;  // after .sum, .lod, .rec, .dis
  };
  const View views[] = {{ClonalView::kCombined, ""}, {ClonalView::kFirstParent, "f"},
                        {ClonalView::kSecondParent, "m"}};
  for (const View& v : views)
    WriteTextFile(stem + ".sum" + v.suffix, SummaryText(map, ClonalSummary(map, pairs, v.view)));
  WriteTextFile(stem + ".mtp", ClonalMtpReport(map));
  for (const View& v : views) {
    if (switches.lod)
      WriteTextFile(stem + ".lod" + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kLod));
    if (switches.rec)
      WriteTextFile(stem + ".rec" + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kRec));
    if (switches.dis)
      WriteTextFile(stem + ".dis" + v.suffix, ClonalMatrixReport(map, pairs, v.view, ClonalMatrix::kDis));
  }
  WriteClonalDownstreamFiles(map, pairs, stem, switches.qtl_file, random);
}

}  // namespace gae
