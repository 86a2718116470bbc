#include "library_call.h"

#include <unistd.h>

#include <chrono>
#include <exception>
#include <future>
#include <thread>

#include <R_ext/Utils.h>

namespace gaer {

CapturedOutput::CapturedOutput() {
  std::fflush(stdout);
  file_ = std::tmpfile();
  if (file_ == nullptr) return;
  saved_ = dup(1);
  if (saved_ < 0 || dup2(fileno(file_), 1) < 0) {
    if (saved_ >= 0) close(saved_);
    saved_ = -1;
  }
}

CapturedOutput::~CapturedOutput() {
  std::fflush(stdout);
  if (saved_ >= 0) {
    dup2(saved_, 1);
    close(saved_);
  }
  if (file_ != nullptr) std::fclose(file_);
}

std::string CapturedOutput::Text() const {
  std::fflush(stdout);
  if (file_ == nullptr) return "";
  std::string text;
  std::rewind(file_);
  char buffer[4096];
  for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, file_)) > 0;) text.append(buffer, got);
  std::fseek(file_, 0, SEEK_END);
  return text;
}

std::string LastLibraryError(const std::string& printed, const std::string& fallback) {
  const std::size_t at = printed.rfind("--Error");
  if (at == std::string::npos) return fallback;
  std::string line = printed.substr(at, printed.find('\n', at) - at);
  const std::string code = line.substr(7, line.find(':') - 7);
  const std::size_t text = line.find(':');
  line = text == std::string::npos ? line : line.substr(text + 1);
  line.erase(0, line.find_first_not_of(' '));
  line.erase(line.find_last_not_of(' ') + 1);
  return line + " (library code " + code.substr(code.find_first_not_of(' ')) + ")";
}

namespace {

void CheckInterrupt(void*) { R_CheckUserInterrupt(); }

// True when the user asked R to stop; R's own check would jump out of the C++ frames.
bool UserInterrupted() { return R_ToplevelExec(CheckInterrupt, nullptr) == FALSE; }

}  // namespace

void RunWatched(const std::function<void(const std::atomic<bool>& stop)>& body, const std::function<void()>& poll,
                std::string& printed) {
  std::atomic<bool> stop{false};
  std::exception_ptr thrown;
  {
    const CapturedOutput captured;
    std::promise<void> finished;
    std::future<void> done = finished.get_future();
    std::thread worker([&] {
      try {
        body(stop);
      } catch (...) {
        thrown = std::current_exception();
      }
      finished.set_value();
    });
    while (done.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready) {
      poll();
      if (!stop && UserInterrupted()) stop = true;
    }
    worker.join();
    printed = captured.Text();
  }
  if (thrown) std::rethrow_exception(thrown);
  if (stop) throw UserError("interrupted by the user");
}

char* ErrorBuffer() {
  static char buffer[4096];
  return buffer;
}

void RaiseStoredError() { Rf_error("%s", ErrorBuffer()); }

}  // namespace gaer
