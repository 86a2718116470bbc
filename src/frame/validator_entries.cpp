#include "frame/validator_entries.h"

#include <string>

#include "frame/process_state.h"
#include "input/aov_trial.h"
#include "input/find_num_markers.h"
#include "frame/file_entry.h"
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

void FindNumMarkersEntry(std::string_view tool, std::string_view dll_name, int tool_code,
                         int path_len, const char* path, int* num_markers, int* status) {
  RunFileEntry(tool, dll_name, path_len, path, status,
               [&](InputFile& in) { ReadMarkerCountHeader(in, tool_code, num_markers); });
}

}  // namespace gae
