// The one driver of the four map tools. Each body is what an export of its family does, for
// whichever tool `policy` (or `profile`) describes; the exports are one-line shells over them.
// Every body guards itself: nothing is thrown back to the caller, failures are `Status` codes.
#pragma once

#include "frame/tool_policy.h"
#include "frame/tool_profile.h"

namespace gae {

// Where a FindNumMarkers export wants its sizes. The genotype tools have `num_markers` only,
// and it is the header read's scratch; the consensus tool fills all four.
struct MapSizeResults {
  int* space_type = nullptr;
  int* space_unit = nullptr;
  int* num_chs = nullptr;
  int* num_markers = nullptr;
};

void FindNumMarkersBody(const ToolProfile& profile, int path_len, const char* path,
                        const MapSizeResults& out, int* status);

// Reads and checks the input, fills the caller's arrays given to the policy, and writes (or
// reuses) the pairwise file that the stage exports read next.
void CheckErrorBody(MapToolPolicy& policy, int path_len, const char* path, int* status,
                    int threads);

// The reports of a finished map. The input file is read for names and genotypes; arrays that
// do not describe a map of its markers write nothing.
void OutputBody(MapToolPolicy& policy, int path_len, const char* path, const FinishedMap& map,
                const OutputSwitches& switches);

// A whole map from the input file to the result files with the tool's settled defaults. The
// input is read once and what was read goes on to the result writer.
void AllByDefaultBody(MapToolPolicy& policy, int path_len, const char* path, int* status,
                      int threads);

// What the stages of a run or a stage export are given: `rules`, the store of the last
// CheckError, the process's random stream, and the run log for the ordering's start lines.
StageContext ProcessStageContext(const StageRules& rules);

// The exports make their policy on the spot.
inline void CheckErrorBody(MapToolPolicy&& policy, int path_len, const char* path, int* status,
                           int threads) {
  CheckErrorBody(policy, path_len, path, status, threads);
}
inline void OutputBody(MapToolPolicy&& policy, int path_len, const char* path,
                       const FinishedMap& map, const OutputSwitches& switches) {
  OutputBody(policy, path_len, path, map, switches);
}
inline void AllByDefaultBody(MapToolPolicy&& policy, int path_len, const char* path, int* status,
                             int threads) {
  AllByDefaultBody(policy, path_len, path, status, threads);
}

}  // namespace gae
