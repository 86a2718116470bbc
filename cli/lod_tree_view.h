// The LOD tree of a project as the `groups` and `map` commands show it, and the threshold
// `--lod auto` takes from it.
#pragma once

#include <string>
#include <vector>

#include "engine/frequency_cap.h"
#include "engine/lod_tree.h"

namespace gaecli {

// Rows for the thresholds from `low` to `high` by `step`, from the project's pairwise file
// (which a check of the project has written), pairs linking only below the frequency max_rf.
// False when the file cannot be read.
bool ProjectLodTree(const std::string& project, int num_markers, float low, float high, float step,
                    std::vector<gae::LodTreeRow>& rows, float max_rf = gae::kNoFrequencyCap);

// A group counts towards a plateau when it holds at least this many markers: 1% of them, and
// never fewer than 3, so that stray markers breaking off at high thresholds do not count.
int FewMarkers(int num_markers);

// The automatic threshold: the lowest threshold of the longest run of rows over which the
// count of groups of at least FewMarkers markers stays the same (the lower run on a tie).
struct AutoLod {
  bool found = false;
  float threshold = 0.0f, run_to = 0.0f;
  int groups = 0;
  std::string reason;  // e.g. "LOD 6.0: the groups stay the same from 6 to 15"
};
AutoLod ChooseLod(const std::vector<gae::LodTreeRow>& rows, int num_markers);

}  // namespace gaecli
