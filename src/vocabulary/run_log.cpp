#include "vocabulary/run_log.h"


namespace gae {

RunLog::~RunLog() {
  while (!open_.empty()) Close();
}

bool RunLog::IsConnectedTo(std::string_view file_name) const {
  return !open_.empty() && open_.back().name == file_name;
}

bool RunLog::Open(const std::string& file_name) {
  std::FILE* file = std::fopen(file_name.c_str(), "a");
  if (file == nullptr) return false;
  open_.push_back({file_name, file});
  return true;
}

void RunLog::Close() {
  if (open_.empty()) return;
  std::fclose(open_.back().file);
  open_.pop_back();
}

void RunLog::Write(std::string_view text, bool open_record) {
  if (open_.empty()) return;
  std::FILE* file = open_.back().file;
  std::fwrite(text.data(), 1, text.size(), file);
  if (!open_record) std::fputc('\n', file);
  // Flushed at once: the log is what a user reads after a failed or interrupted run.
  std::fflush(file);
}

LogSession::LogSession(std::string_view tool) {
  if (tool.empty()) return;
  const std::string name = std::string(tool) + ".log";
  RunLog& log = ProcessRunLog();
  if (log.IsConnectedTo(name)) return;
  opened_here_ = log.Open(name);
}

LogSession::~LogSession() {
  if (opened_here_) ProcessRunLog().Close();
}

void EmitLine(std::string_view line) {
  ProcessRunLog().Write(line);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

void EmitPiece(std::string_view piece) {
  ProcessRunLog().Write(piece, /*open_record=*/true);
  std::fwrite(piece.data(), 1, piece.size(), stdout);
  std::fflush(stdout);
}

}  // namespace gae
