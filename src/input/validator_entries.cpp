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

}  // namespace gae
