#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"

int main(int argc, char** argv) {
  CLI::App app{"gaengine: linkage maps and input checks for breeding populations"};
  app.require_subcommand(1);
  std::string seed;
  app.add_option("--seed", seed,
                 "Fix the seed of the random starts of ordering, to reproduce a run")
      ->check(CLI::PositiveNumber);

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

  // The seed must be in place before any sub-command runs.
  app.parse_complete_callback([&] {
    if (!seed.empty()) ::setenv("GAENGINE_SEED", seed.c_str(), 1);
  });
  CLI11_PARSE(app, argc, argv);
  return exit_code;
}
