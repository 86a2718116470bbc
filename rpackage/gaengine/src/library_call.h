// Library code run from an R entry. The library prints its catalogue lines on standard output;
// here they are kept out of the console and the last error line becomes the R error's text.
// Every C++ exception stops at the entry, and R's error is raised only once the entry's C++
// objects are gone, so a failure never unwinds the R session past live C++ frames.
#pragma once

#define R_NO_REMAP
#include <R.h>
#include <Rinternals.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

namespace gaer {

// A failure worded for the R user: the entry stops and R signals it as an error.
struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The process's standard output goes to a temporary file while this lives.
class CapturedOutput {
 public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  std::string Text() const;

 private:
  std::FILE* file_ = nullptr;
  int saved_ = -1;
};

// The text of the library's last error line ("--Error2202: Invalid ..." less its prefix, with
// the code after it), or `fallback` when it printed none.
std::string LastLibraryError(const std::string& printed, const std::string& fallback);

// Runs `body` on a worker thread with standard output captured. Meanwhile the R thread calls
// `poll` every tenth of a second and looks for a user interrupt, which sets `stop` for the
// body's callbacks to read. Rethrows what the body threw; a UserError when it was interrupted.
void RunWatched(const std::function<void(const std::atomic<bool>& stop)>& body, const std::function<void()>& poll,
                std::string& printed);

// Holds the message of a failed entry until R raises it.
char* ErrorBuffer();
[[noreturn]] void RaiseStoredError();

// An entry's body under guard: its result, or an R error with the failure's words.
template <class Body>
SEXP Answer(Body&& body) {
  bool failed = false;
  SEXP result = R_NilValue;
  try {
    result = body();
  } catch (const std::exception& e) {
    std::snprintf(ErrorBuffer(), 4096, "%s", e.what());
    failed = true;
  } catch (...) {
    std::snprintf(ErrorBuffer(), 4096, "the library failed in an unexpected way");
    failed = true;
  }
  if (failed) RaiseStoredError();
  return result;
}

}  // namespace gaer
