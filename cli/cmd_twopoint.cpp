// gaengine twopoint --pop TYPE --code CODE N1 ... N9: the two-point calculator on one table.
#include <cmath>
#include <cstdio>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "gaengine.h"

namespace gaecli {

namespace {

// A frequency with no estimate is NaN; it prints as such, without a sign.
void Print(const char* label, float value, const char* format) {
  std::printf("%-9s ", label);
  if (std::isnan(value)) std::printf("%12s", "NaN");
  else std::printf(format, static_cast<double>(value));
  std::printf("\n");
}

}  // namespace

void RegisterTwoPointCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand(
      "twopoint", "Recombination frequency, LOD and distances of one marker pair's 3 x 3 table");
  static int population = 7;
  static int code = 11;
  static std::vector<float> cells;
  cmd->add_option("--pop", population, "Population type, 1 to 20 (7 is F2)")
      ->required()
      ->check(CLI::Range(1, 20));
  cmd->add_option("--code", code,
                  "Pair code: the two marker kinds side by side, 1 co-dominant, 12 dominant, "
                  "10 recessive (11, 112, 110, 121, 1212, 1210, 101, 1012, 1010)")
      ->required()
      ->check(CLI::IsMember({11, 112, 110, 121, 1212, 1210, 101, 1012, 1010}));
  cmd->add_option("cells", cells,
                  "Nine counts row by row: rows the first marker's class (A; H, D or R; B), "
                  "columns the second's")
      ->required()
      ->expected(9);
  cmd->callback([&exit_code] {
    float rec = 0, se = 0, lod = 0, p = 0, haldane = 0, kosambi = 0;
    ToolTwoPointREC(code, population, cells.data(), &rec, &se, &lod, &p, &haldane, &kosambi);
    Print("RecFreq", rec, "%12.6f");
    Print("StdErr", se, "%12.6f");
    Print("LOD", lod, "%12.6f");
    Print("PValue", p, "%12.6g");
    Print("HaldaneCM", haldane, "%12.4f");
    Print("KosambiCM", kosambi, "%12.4f");
    exit_code = 0;
  });
}

}  // namespace gaecli
