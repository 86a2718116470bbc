#include <csignal>
#include <cstdio>
#include <new>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "help_text.h"
#include "library_output.h"
#include "run_settings.h"
#include "user_errors.h"

#ifndef GAE_VERSION
#define GAE_VERSION "unknown"
#endif

int main(int argc, char** argv) {
  // A write past the file-size limit fails as on a full disk, and the run says so.
  std::signal(SIGXFSZ, SIG_IGN);
  CLI::App app{"gaengine: linkage maps and input checks for breeding populations"};
  app.require_subcommand(1);
  // Options of the command may also follow the sub-command: `gaengine map --seed 3 f.map`.
  app.fallthrough();
  app.set_version_flag("--version", std::string("gaengine ") + GAE_VERSION);
  bool verbose = false;
  app.add_flag("-v,--verbose", verbose, "Also show the library's own lines (they always go to the run log)");
  gaecli::RegisterSeedOption(app);

  int exit_code = 0;
  gaecli::RegisterMarkersCommand(app, exit_code);
  gaecli::RegisterPairsCommand(app, exit_code);
  gaecli::RegisterMapCommand(app, exit_code);
  gaecli::RegisterCheckCommand(app, exit_code);
  gaecli::RegisterTwoPointCommand(app, exit_code);
  gaecli::RegisterSnpCommand(app, exit_code);
  gaecli::RegisterBinCommand(app, exit_code);
  gaecli::RegisterPlotCommand(app, exit_code);
  gaecli::RegisterGroupsCommand(app, exit_code);
  gaecli::RegisterImportCommand(app, exit_code);
  gaecli::AddHelpFooters(app);
  gaecli::AddInputNameChecks(app);

  // The seed must be in place before any sub-command runs.
  app.parse_complete_callback([&] {
    gaecli::SetVerbose(verbose);
    gaecli::FixSeed();
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // Help and version end with status 0; every other usage error with 2.
    const int code = app.exit(e);
    return code == 0 ? 0 : 2;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "gaengine: not enough memory for this file\n");
    return 1;
  }
  return exit_code;
}
