// gaengine import FORMAT FILE -o OUT: data kept in another program's format become a map tool's
// input file. Each format registers its own sub-command.
#include <CLI/CLI.hpp>

#include "commands.h"
#include "import_rqtl.h"
#include "import_vcf.h"

namespace gaecli {

void RegisterImportCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("import", "Write a map tool's input file from data kept in another program's format");
  cmd->require_subcommand(1);
  RegisterRqtlImport(*cmd, exit_code);
  RegisterImportVcf(*cmd, exit_code);
}

}  // namespace gaecli
