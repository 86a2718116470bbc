#include "frame/entry.h"

#include <string.h>

#include <algorithm>

#include "frame/store_bus_guard.h"

namespace gae {

std::string EntryPath(int path_len, const char* path) {
  if (path_len < 1 || path == nullptr) return {};
  // A C or Fortran front end may pass its buffer's size, or more: the path ends at its first
  // NUL, and no byte past it is read (the buffer may end there).
  const std::size_t length = ::strnlen(path, static_cast<std::size_t>(path_len));
  std::string text(path, length);
  const std::size_t end = text.find_last_not_of(' ');
  return end == std::string::npos ? std::string() : text.substr(0, end + 1);
}

void ReportMissingInput(const std::string& path, std::string_view dll_name, int* status) {
  MessageCode() = kMissingFile;
  PrintMessage(kMissingFile, {MsgArg::Field(path)});
  ReportEntryFailure(dll_name, status);
}

void ReportEntryFailure(std::string_view dll_name, int* status) {
  if (status != nullptr) *status = MessageCode();
  MessageCode() = kEntryFailed;
  PrintFrameMessage(dll_name, 0.0f, 0.0f, 0);
}

void ReportEntrySuccess(std::string_view dll_name) {
  MessageCode() = kEntrySucceeded;
  PrintFrameMessage(dll_name, 0.0f, 0.0f, 0);
}

bool RefuseMissingArrays(bool missing, std::string_view tool, std::string_view dll_name,
                         int* status) {
  if (!missing) return false;
  LogSession log(tool);
  if (status != nullptr) *status = 1101;
  MessageCode() = 1101;
  PrintFrameMessage(dll_name, 0.0f, 0.0f, 0);
  return true;
}

void ReportSkippedResults(const std::vector<std::string>& skipped) {
  for (const std::string& path : skipped) {
    MessageCode() = 1118;
    PrintMessage(1118, {MsgArg::Field(path)});
  }
  MessageCode() = 0;
}

bool StoreCutShort(std::string_view dll_name, int* status) {
  if (!StoreBusGuard().TakeDamage()) return false;
  MessageCode() = kEntryFailed;
  PrintFrameMessage(Process().pair_store.lrd_name, 0.0f, 0.0f, 0);
  PrintFrameMessage(dll_name, 0.0f, 0.0f, 0);
  if (status != nullptr) *status = kEntryFailed;
  return true;
}

bool ReportUnwrittenFiles(const std::vector<std::string>& failed) {
  for (const std::string& path : failed) {
    MessageCode() = kEntryFailed;
    PrintFrameMessage(path, 0.0f, 0.0f, 0);
  }
  return failed.empty();
}

}  // namespace gae
