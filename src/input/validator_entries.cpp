#include "input/validator_entries.h"

#include <string>

#include "frame/process_state.h"
#include "input/aov_trial.h"
#include "input/file_entry.h"
#include "input/header_fields.h"
#include "input/consensus_input.h"

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
    ConsensusInput data;
    const bool read = ReadConsensusInput(in, data);
    // The header values stand in the caller's variables as far as they were read.
    if (data.space_type != 0) *space_type = data.space_type;
    if (data.space_unit != 0) *space_unit = data.space_unit;
    if (data.num_maps != 0) *num_chs = data.num_maps;
    if (read) *num_markers = data.maps.distinct.Count();
  });
}

}  // namespace gae
