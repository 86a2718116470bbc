#include "input/validator_entries.h"

#include <string>

#include "frame/entry.h"
#include "input/aov_trial.h"
#include "input/header_fields.h"
#include "input/map_section.h"

namespace gae {

void RunCheckEntry(std::string_view tool, std::string_view dll_name, int path_len,
                   const char* path, int* status, const std::function<void(InputFile&)>& read) {
  if (status != nullptr) *status = 0;
  GuardedEntry(tool, dll_name, status, [&] {
    MessageCode() = 0;
    const std::string file_path = EntryPath(path_len, path);
    InputFile in;
    if (!in.Open(file_path)) {
      ReportMissingInput(file_path, dll_name, status);
      return;
    }
    read(in);
    in.Close();
    if (MessageCode() != 0) ReportEntryFailure(dll_name, status);
    else ReportEntrySuccess(dll_name);
  });
}

void CheckQtlFileEntry(QtlTool tool, int path_len, const char* path, int* status) {
  const std::string name(ToolName(tool));
  RunCheckEntry(name, "DLL CheckError" + name, path_len, path, status, [tool](InputFile& in) {
    QtlFileData data;
    ReadQtlFile(in, tool, data, Process().missing_word_seen);
  });
}

void CheckAovEntry(int path_len, const char* path, int* status) {
  RunCheckEntry("AOV", "DLL CheckErrorAOV", path_len, path, status, [](InputFile& in) {
    AovTrial trial;
    ReadAovTrial(in, trial, Process().missing_word_seen);
  });
}

void CmpFindNumMarkersEntry(int path_len, const char* path, int* space_type, int* space_unit,
                            int* num_chs, int* num_markers, int* status) {
  RunCheckEntry("CMP", "DLL CMPFindNumMarkers", path_len, path, status, [&](InputFile& in) {
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
