// The PLM check as `gaengine map` runs it on a pure-line file: PLMFindNumMarkers, then
// CheckErrorPLM, into the marker table that the map command keeps. The founder counts of the
// check stay here; the table keeps what the stages and the summary need.
#include <cstdio>
#include <string>
#include <vector>

#include "run_guard.h"
#include "gaengine.h"
#include "frame/tool_profile.h"
#include "library_output.h"
#include "pipeline/pair_fingerprint.h"
#include "twopoint/pair_store_writer.h"
#include "map_check.h"
#include "commands.h"
#include "input/tool_codes.h"

namespace gaecli {

int CheckPlmFile(const std::string& path, MarkerTable& t) {
  const PathArg arg(path);
  int n = 0, status = 0;
  {
    const LibraryOutput quiet;
    PLMFindNumMarkers(arg.Len(), arg.Data(), &n, &status);
  }
  if (status != 0) return status;
  if (!DeclaredSizeFits(path, n, "markers")) return kRefusedByCommand;
  t.num_markers = n;
  t.name_codes.assign(static_cast<size_t>(n) * 35, 0);
  t.anchor.assign(n, 0);
  t.category.assign(n, 0);
  t.chi_square.assign(n, 0.0f);
  t.probability.assign(n, 0.0f);
  std::vector<std::vector<int>> sizes(9, std::vector<int>(n, 0));
  const std::string lrd = gae::PairStoreName(path);
  const std::string fingerprint = PreparePairFile(path, gae::kPureLineToolCode);
  CheckErrorPLM(arg.Len(), arg.Data(), n, t.name_codes.data(), t.anchor.data(), sizes[0].data(),
                sizes[1].data(), sizes[2].data(), sizes[3].data(), sizes[4].data(), sizes[5].data(),
                sizes[6].data(), sizes[7].data(), sizes[8].data(), t.category.data(),
                t.chi_square.data(), t.probability.data(), &status);
  t.size_x = std::move(sizes[8]);
  if (status == 0) gae::RecordPairFileSource(lrd, fingerprint);
  return status;
}

}  // namespace gaecli
