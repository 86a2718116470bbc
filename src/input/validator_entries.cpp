#include "input/validator_entries.h"

#include <string>

#include "frame/process_state.h"
#include "input/aov_trial.h"
#include "input/file_entry.h"
#include "input/header_fields.h"
#include "input/map_section.h"

namespace gae {

void CheckQtlFileEntry(QtlTool tool, int path_len, const char* path, int* status) {
  const std::string name(ToolName(tool));
  RunFileEntry(name, "DLL CheckError" + name, path_len, path, status, [tool](InputFile& in) {
    QtlFileData data;
    ReadQtlFile(in, tool, data, Process().missing_word_seen);
  });
}

void CheckAovEntry(int path_len, const char* path, int* status) {
  RunFileEntry("AOV", "DLL CheckErrorAOV", path_len, path, status, [](InputFile& in) {
    AovTrial trial;
    ReadAovTrial(in, trial, Process().missing_word_seen);
  });
}

void CmpFindNumMarkersEntry(int path_len, const char* path, int* space_type, int* space_unit,
                            int* num_chs, int* num_markers, int* status) {
  RunFileEntry("CMP", "DLL CMPFindNumMarkers", path_len, path, status, [&](InputFile& in) {
    constexpr int kConsensus = 105;
    int32_t values[3] = {0, 0, 0};
    int* results[3] = {space_type, space_unit, num_chs};
    const HeaderField fields[3] = {HeaderField::kSpaceType, HeaderField::kSpaceUnit,
                                   HeaderField::kNumChs};
    for (int f = 0; f < 3; ++f) {
      if (!ReadHeaderField(in, fields[f], kConsensus, values[f])) return;
      *results[f] = values[f];
    }
    MapSection map;
    if (ReadMapSection(in, kConsensus, values[2], values[0], values[1], map)) {
      *num_markers = map.distinct.Count();
    }
  });
}

}  // namespace gae
