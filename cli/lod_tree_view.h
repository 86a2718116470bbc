// The LOD tree of a project's pairwise file as the `groups` command and the front end's run show it.
#pragma once

#include <string>
#include <vector>

#include "engine/auto_lod.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"

namespace gaecli {

// Rows for the thresholds from `low` to `high` by `step`, from the project's pairwise file
// (which a check of the project has written, of any map tool), pairs linking only below the
// frequency max_rf, as the library's linkage rule reads them. False when the file cannot be
// read.
bool ProjectLodTree(const std::string& project, int num_markers, float low, float high, float step,
                    std::vector<gae::LodTreeRow>& rows, float max_rf);

using gae::AutoLod;
using gae::ChooseLod;
using gae::FewMarkers;

}  // namespace gaecli
