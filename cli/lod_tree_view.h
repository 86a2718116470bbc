// The LOD tree of a project as the `groups` and `map` commands show it, and the threshold
// `--lod auto` takes from it.
#pragma once

#include <string>
#include <vector>

#include "engine/linkage_rule.h"
#include "engine/lod_tree.h"

namespace gaecli {

// Rows for the thresholds from `low` to `high` by `step`, from the project's pairwise file
// (which a check of the project has written, of any map tool), pairs linking only below the
// frequency max_rf, as the library's linkage rule reads them. False when the file cannot be
// read.
bool ProjectLodTree(const std::string& project, int num_markers, float low, float high, float step,
                    std::vector<gae::LodTreeRow>& rows, float max_rf);

// The library's size of a group that counts towards a plateau.
int FewMarkers(int num_markers);

// The library's automatic threshold, with the words a summary gives about it.
struct AutoLod {
  bool found = false;
  float threshold = 0.0f, run_to = 0.0f;
  int groups = 0;
  std::string reason;  // e.g. "LOD 6.0: the groups stay the same from 6 to 15"
};
AutoLod ChooseLod(const std::vector<gae::LodTreeRow>& rows, int num_markers);

}  // namespace gaecli
