#include "input/find_num_markers.h"

#include "input/file_entry.h"
#include "input/header_fields.h"

namespace gae {

void FindNumMarkersEntry(std::string_view tool, std::string_view dll_name, int tool_code,
                         int path_len, const char* path, int* num_markers, int* status) {
  RunFileEntry(tool, dll_name, path_len, path, status, [&](InputFile& in) {
    const HeaderField fields[] = {HeaderField::kPopulationType, HeaderField::kMappingFunction,
                                  HeaderField::kSpaceType, HeaderField::kNumMarkers};
    for (HeaderField field : fields) {
      int32_t value = 0;
      if (!ReadHeaderField(in, field, tool_code, value)) return;
      *num_markers = value;
    }
  });
}

}  // namespace gae
