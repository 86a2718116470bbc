#include "library_output.h"

#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>

namespace gaecli {

namespace {

bool verbose_mode = false;
int depth = 0;
std::string transcript;

// Warnings matter without -v too: the first few go to standard error.
void RelayWarnings(std::size_t from) {
  constexpr int kShown = 5;
  int count = 0;
  for (std::size_t begin = from; begin < transcript.size();) {
    std::size_t end = transcript.find('\n', begin);
    if (end == std::string::npos) end = transcript.size();
    const std::string line = transcript.substr(begin, end - begin);
    if (line.find("Warning") != std::string::npos && count++ < kShown) std::fprintf(stderr, "%s\n", line.c_str());
    begin = end + 1;
  }
  if (count > kShown) std::fprintf(stderr, "(%d more warnings in the run log)\n", count - kShown);
}

}  // namespace

void SetVerbose(bool verbose) { verbose_mode = verbose; }
bool Verbose() { return verbose_mode; }

struct LibraryOutput::Capture {
  int saved_stdout = -1;
  int read_end = -1;
  std::thread reader;
  bool echo = false;
  std::string text;  // what this scope's calls printed
};

LibraryOutput::LibraryOutput(bool shown) : shown_(shown) {
  if (depth++ > 0) return;
  std::fflush(stdout);
  int ends[2];
  if (::pipe(ends) != 0) return;
  auto* c = new Capture;
  c->saved_stdout = ::dup(STDOUT_FILENO);
  c->read_end = ends[0];
  c->echo = shown && verbose_mode;
  ::dup2(ends[1], STDOUT_FILENO);
  ::close(ends[1]);
  // The reader drains the pipe as the library writes, so a long run never blocks on a full
  // pipe, and -v shows the lines as they come.
  c->reader = std::thread([c] {
    char buffer[4096];
    ssize_t got = 0;
    while ((got = ::read(c->read_end, buffer, sizeof buffer)) > 0) {
      c->text.append(buffer, static_cast<std::size_t>(got));
      // Only the end matters for explaining an error: a run that warns of every pair is cut.
      if (c->text.size() > (8u << 20)) c->text.erase(0, 4u << 20);
      if (c->echo && ::write(c->saved_stdout, buffer, static_cast<std::size_t>(got)) < 0) break;
    }
  });
  capture_ = c;
  start_ = transcript.size();
}

LibraryOutput::~LibraryOutput() {
  --depth;
  if (capture_ == nullptr) return;
  std::fflush(stdout);
  ::dup2(capture_->saved_stdout, STDOUT_FILENO);  // closes the pipe's last write end
  capture_->reader.join();
  ::close(capture_->read_end);
  ::close(capture_->saved_stdout);
  if (shown_) transcript += capture_->text;
  delete capture_;
  if (shown_ && !verbose_mode) RelayWarnings(start_);
}

const std::string& LibraryTranscript() { return transcript; }

}  // namespace gaecli
