// Parts of the map summary that say what a user must know to read the results right: the
// settings of the run, groups of one marker apart from the linkage groups, which written files
// are templates, and where the matrix files stop.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/map_state.h"
#include "input/tool_codes.h"

namespace gaecli {

struct RunFacts {
  int tool_code = gae::kMapToolCode;
  float threshold = 3.0f;
  int starts = 5;
  bool pairs_computed = false;
  bool default_lod = true;
  std::vector<std::string> notes;  // lines of the checks before mapping, each a label and its words
};

int OneMarkerGroups(const gae::MapModel& m);

// One line with the groups of one marker and the marker of each; `marker_at(k)` names the
// marker at 0-based map position k.
void PrintOneMarkerGroups(const gae::MapModel& m, const std::vector<std::string>& group_names,
                          const std::function<std::string(int)>& marker_at);

// The result files that exist beside the input, the .bip and .met templates apart, and the
// limit of the matrix files.
// `suffixes` are those of the tool's run.
void PrintFilesWritten(const std::string& stem, const std::vector<const char*>& suffixes, int num_mapped);
// The same for a list of written paths: the results, the .bip and .met templates apart.
void PrintFileLists(const std::vector<std::string>& files, int num_mapped);

}  // namespace gaecli
