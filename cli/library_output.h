// What the library prints. Its exports write every catalogue line to the run log and to
// standard output; at a terminal that buries the command's own words under "DLL ... run
// successfully!" and CPU-time lines. Each block of library calls runs inside a LibraryOutput:
// the lines are kept (the command explains errors from them) and shown only with -v.
#pragma once

#include <string>

namespace gaecli {

void SetVerbose(bool verbose);
bool Verbose();

// While alive, the process's standard output goes into a pipe that a reader thread drains
// (and copies to the terminal with -v). Scopes nest: an inner one leaves the outer in charge.
// The command prints nothing of its own on standard output inside a scope.
class LibraryOutput {
 public:
  // `shown`: false for the command's own reads, whose lines mean nothing to a user even with -v.
  explicit LibraryOutput(bool shown = true);
  ~LibraryOutput();
  LibraryOutput(const LibraryOutput&) = delete;
  LibraryOutput& operator=(const LibraryOutput&) = delete;

 private:
  struct Capture;
  Capture* capture_ = nullptr;  // null when an outer scope captures or no pipe could be made
  std::size_t start_ = 0;       // where this scope's text begins in the transcript
  bool shown_ = true;
};

// Everything the library has printed in this process so far.
const std::string& LibraryTranscript();

}  // namespace gaecli
