// Running this build's `gaengine` command as a user does, from the current folder.
#pragma once

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

}  // namespace gae::testing
