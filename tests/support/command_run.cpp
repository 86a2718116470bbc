#include "support/command_run.h"

#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdio>

#include "support/temp_dir.h"

namespace gae::testing {

namespace {

CommandRun Run(const std::string& arguments, const char* redirect) {
  const std::string command = std::string(GAE_BINARY_DIR) + "/gaengine " + arguments + redirect;
  CommandRun run;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) run.out += buffer;
  const int status = ::pclose(pipe);
  run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

}  // namespace

CommandRun Gaengine(const std::string& arguments) { return Run(arguments, " 2>&1"); }

CommandRun GaengineErrApart(const std::string& arguments) {
  CommandRun run = Run(arguments, " 2>stderr.txt");
  run.err = ReadText("stderr.txt");
  return run;
}

void ExpectHasAll(const std::string& text, std::initializer_list<std::string> parts) {
  for (const std::string& part : parts)
    if (text.find(part) == std::string::npos) ADD_FAILURE() << "missing \"" << part << "\" in:\n" << text;
}

void ExpectHasNone(const std::string& text, std::initializer_list<std::string> parts) {
  for (const std::string& part : parts)
    if (text.find(part) != std::string::npos) ADD_FAILURE() << "unexpected \"" << part << "\" in:\n" << text;
}

}  // namespace gae::testing
