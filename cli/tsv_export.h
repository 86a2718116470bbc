// Tab-separated copies of a finished map for R, spreadsheets and chart tools: the map itself
// and the marker pairs. Each file starts with a header row; numbers use a dot.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/map_state.h"

namespace gaecli {

struct MapTsvRow {
  std::string group, marker;
  float position = 0.0f;  // cM from the group's first marker
};

// "group  marker  position_cM  interval_cM": the interval is the distance from the group's
// previous marker (0 for its first).
std::string MapTsvText(const std::vector<MapTsvRow>& rows);

// "marker1  marker2  rec_freq  lod" for each pair of the pairwise file `lrd` (records of
// `record_length` words, the first minus the LOD and the second the frequency) whose LOD is at
// least `min_lod`. `names` by marker number. False when the file cannot be read.
bool WritePairsTsv(const std::string& lrd, int record_length, const std::vector<std::string>& names, float min_lod,
                   const std::string& out, long long& written);

// Both files of a finished map beside `file`: the linked markers in map order, group by group,
// and the pairs of LOD `min_lod` or more. Says on standard error what could not be written.
bool WriteMapTables(const std::string& file, int record_length, const gae::MapModel& m,
                    const std::vector<std::string>& group_names, const std::function<std::string(int)>& marker_name,
                    float min_lod);

}  // namespace gaecli
