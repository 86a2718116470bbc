#include "frame/entry.h"

namespace gae {

std::string EntryPath(int path_len, const char* path) {
  if (path_len < 1 || path == nullptr) return {};
  std::string text(path, static_cast<std::size_t>(path_len));
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

}  // namespace gae
