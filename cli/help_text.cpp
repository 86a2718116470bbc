#include "help_text.h"

#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace gaecli {

namespace {

struct Example {
  std::string_view command, line;
};

constexpr Example kExamples[] = {
    {"map", "gaengine map --seed 7 --tsv examples/f2_five_chromosomes.map"},
    {"pairs", "gaengine pairs --markers examples/f2_five_chromosomes.map"},
    {"groups", "gaengine groups --from 2 --to 12 examples/f2_five_chromosomes.map"},
    {"markers", "gaengine markers MAP examples/f2_five_chromosomes.map"},
    {"check", "gaengine check BIP examples/ril_two_traits.bip"},
    {"twopoint", "gaengine twopoint --pop 7 --code 11 25 10 1 10 50 10 1 10 25"},
    {"snp", "gaengine snp examples/f2_parents_progeny.snp -o f2.map"},
    {"bin", "gaengine bin examples/f2_redundant.bin -o f2_bins.map"},
    {"plot", "gaengine plot examples/f2_five_chromosomes.map"},
    {"import", "gaengine import rqtl --pop 7 --anchors cross.csv -o cross.map"},
};

constexpr const char* kMainFooter =
    "\nFiles: results are written beside the input file and named by its name less the last four\n"
    "characters (f2.map gives f2.sum, f2.LRD, ...), so an input name ends in a dot and three letters.\n"
    "Run logs (MAP.log, ...) are appended to in the working folder. The pair file (.LRD) is reused by\n"
    "later runs on the same data.\n"
    "\nEnvironment: GAENGINE_THREADS sets the number of threads that compute the marker pairs\n"
    "(default: one per core); GAENGINE_SEED, a positive integer, stands for --seed.\n"
    "\nExit status: 0 success, 1 a bad input file or a file that cannot be written, 2 a usage error.\n"
    "\nExamples:\n";

}  // namespace

void AddHelpFooters(CLI::App& app) {
  std::string footer = kMainFooter;
  for (const Example& e : kExamples) {
    CLI::App* cmd = nullptr;
    try {
      cmd = app.get_subcommand(std::string(e.command));
    } catch (const CLI::OptionNotFound&) {
      continue;
    }
    cmd->footer("\nExample:\n  " + std::string(e.line));
    footer += "  " + std::string(e.line) + "\n";
  }
  app.footer(footer);
}

}  // namespace gaecli
