// Running this build's `gaengine` command as a user does, from the current folder.
#pragma once

#include <initializer_list>
#include <string>

namespace gae::testing {

struct CommandRun {
  int exit_code = -1;
  std::string out;  // standard output, and standard error too unless it is kept apart
  std::string err;  // standard error when kept apart
};

// `gaengine ARGUMENTS` with standard error joined to standard output.
CommandRun Gaengine(const std::string& arguments);
// The same with standard error kept apart, for the messages a user reads there.
CommandRun GaengineErrApart(const std::string& arguments);
// Fails the test for each of `parts` that `text` does not hold.
void ExpectHasAll(const std::string& text, std::initializer_list<std::string> parts);
// Fails the test for each of `parts` that `text` holds.
void ExpectHasNone(const std::string& text, std::initializer_list<std::string> parts);

}  // namespace gae::testing
