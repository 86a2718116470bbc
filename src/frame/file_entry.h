// The frame of an exported entry that reads one input file: open the tool's log and the file,
// run the reader, and end with the entry's 1102 or 1101 line. A missing file gives the 1002
// line and `Status` 1002; the process never ends.
#pragma once

#include <functional>
#include <string_view>

#include "input/list_reader.h"

namespace gae {

// `read` leaves `MessageCode` 0 or the failure's code; what it allocates lives in its own scope
// and is gone when it returns, on failure as on success.
// `success_name` replaces `dll_name` in the closing 1102 line when it is given.
void RunFileEntry(std::string_view tool, std::string_view dll_name, int path_len,
                  const char* path, int* status, const std::function<void(InputFile&)>& read,
                  std::string_view success_name = {});

}  // namespace gae
