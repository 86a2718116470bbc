// The frame of an exported entry: path decoding, the log session, and the guarantee that
// nothing escapes across the C boundary.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vocabulary/frame_codes.h"
#include "vocabulary/messages.h"
#include "vocabulary/path_stem.h"
#include "frame/process_state.h"
#include "vocabulary/run_log.h"

namespace gae {

// At most `PathLen` bytes at `path`, up to the first NUL, trailing blanks trimmed; empty when
// `PathLen` is below 1.
std::string EntryPath(int path_len, const char* path);

// The input file is missing or unreadable: the 1002 line (the path followed by " does not
// exist, and the program stops!"), `Status` 1002, then the entry's 1101 line.
void ReportMissingInput(const std::string& path, std::string_view dll_name, int* status);

// A failed read left its code in `MessageCode` and printed its cause: `Status` takes the code
// and the entry says 1101 with its name.
void ReportEntryFailure(std::string_view dll_name, int* status);
// The closing 1102 line of a successful entry.
void ReportEntrySuccess(std::string_view dll_name);

// A stage export handed no array where it needs one (a null pointer beside a count that
// promises elements): nothing is read or changed, the 1101 line names the export, and
// `MessageCode` and `Status` become 1101. Returns whether the arrays were refused.
bool RefuseMissingArrays(bool missing, std::string_view tool, std::string_view dll_name,
                         int* status);

// Whether any of the pointers is null: an export refuses such a call before it writes
// through one.
template <class... Pointers>
bool AnyNull(const Pointers*... pointers) {
  return ((pointers == nullptr) || ...);
}

// One 1118 line for each result file that was not written because it would have replaced
// the input file.
void ReportSkippedResults(const std::vector<std::string>& skipped);

// Each file that could not be written completely: the 1101 line with the file's name in
// place of the export's. `MessageCode` is left at 1101 when there was one. Returns whether
// all were written.
bool ReportUnwrittenFiles(const std::vector<std::string>& failed);

// Whether the pairwise file was cut short under this call: then the 1101 line names the file,
// another names the export, and `Status` and `MessageCode` become 1101.
bool StoreCutShort(std::string_view dll_name, int* status);

// Runs an export's body inside the tool's log session. An exception (in practice a refused
// allocation for an absurd size) becomes the 1101 line and `Status` 1101: the host program
// never sees it.
template <class Body>
void GuardedEntry(std::string_view tool, std::string_view dll_name, int* status, Body&& body) noexcept {
  try {
    LogSession log(tool);
    try {
      body();
      StoreCutShort(dll_name, status);
    } catch (...) {
      if (status != nullptr) *status = kEntryFailed;
      MessageCode() = kEntryFailed;
      PrintFrameMessage(dll_name, 0.0f, 0.0f, 0);
    }
  } catch (...) {
    if (status != nullptr) *status = kEntryFailed;
  }
}

}  // namespace gae
