// The tool's run log (MAP.log, CDM.log, ...) in the current working directory.
//
// An entry of the library opens its tool's log unless that log is already connected, and
// closes it on the way out only if it opened it: nested entries (a whole-pipeline run calling
// the marker-count body, say) share one log and the outermost one closes it. The log is
// opened for appending, so it grows across runs in the same folder.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace gae {

class RunLog {
 public:
  RunLog() = default;
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;
  ~RunLog();

  bool IsConnectedTo(std::string_view file_name) const;
  bool IsConnected() const { return !open_.empty(); }
  // Creates the file when it does not exist, appends otherwise.
  bool Open(const std::string& file_name);
  void Close();  // closes the file opened last
  // One record to the log, if one is connected. The text ends the record unless `open_record`.
  void Write(std::string_view text, bool open_record = false);

 private:
  struct OpenFile {
    std::string name;
    std::FILE* file;
  };
  // A log of another tool opened inside an entry that holds one stacks on top of it and is
  // closed before the outer one is written to again.
  std::vector<OpenFile> open_;
};

// Scope of one exported entry's use of the log. `tool` is the three-letter tool code
// ("MAP"); an empty tool opens nothing, and messages then go to standard output only.
class LogSession {
 public:
  explicit LogSession(std::string_view tool);
  LogSession(const LogSession&) = delete;
  LogSession& operator=(const LogSession&) = delete;
  ~LogSession();
  bool OpenedHere() const { return opened_here_; }

 private:
  bool opened_here_ = false;
};

// The one log of the process. The process state owns it (the exported entries open and close
// it); routines here only write to whatever log is connected.
RunLog& ProcessRunLog();

// A message line goes first to the log, then to the process's standard output.
void EmitLine(std::string_view line);
// Part of a line: the record stays open for the next piece on both streams.
void EmitPiece(std::string_view piece);

}  // namespace gae
