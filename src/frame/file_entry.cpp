#include "frame/file_entry.h"

#include <string>

#include "frame/entry.h"

namespace gae {

void RunFileEntry(std::string_view tool, std::string_view dll_name, int path_len,
                  const char* path, int* status, const std::function<void(InputFile&)>& read,
                  std::string_view success_name) {
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
    else ReportEntrySuccess(success_name.empty() ? dll_name : success_name);
  });
}

}  // namespace gae
