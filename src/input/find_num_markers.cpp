#include "input/find_num_markers.h"

#include "frame/entry.h"
#include "input/header_fields.h"
#include "input/list_reader.h"

namespace gae {

void FindNumMarkersEntry(std::string_view tool, std::string_view dll_name, int tool_code,
                         int path_len, const char* path, int* num_markers, int* status) {
  *status = 0;
  GuardedEntry(tool, dll_name, status, [&] {
    MessageCode() = 0;
    const std::string file_path = EntryPath(path_len, path);
    InputFile in;
    if (!in.Open(file_path)) {
      ReportMissingInput(file_path, dll_name, status);
      return;
    }
    const HeaderField fields[] = {HeaderField::kPopulationType, HeaderField::kMappingFunction,
                                  HeaderField::kSpaceType, HeaderField::kNumMarkers};
    for (HeaderField field : fields) {
      int32_t value = 0;
      if (!ReadHeaderField(in, field, tool_code, value)) {
        ReportEntryFailure(dll_name, status);
        return;
      }
      *num_markers = value;
    }
    ReportEntrySuccess(dll_name);
  });
}

}  // namespace gae
