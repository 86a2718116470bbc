// gaengine pairs FILE [--markers]: check a MAP input file and compute its pairwise file.
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "frame/tool_profile.h"
#include "map_check.h"
#include "map_gates.h"
#include "run_settings.h"
#include "user_errors.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

void RegisterPairsCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("pairs", "Check a MAP input file and compute its pairwise file");
  static std::string file;
  static bool show_markers = false, force = false;
  cmd->add_option("file", file, "MAP input file")->required();
  cmd->add_flag("--markers", show_markers, "Print the marker table");
  cmd->add_flag("--force", force, "Compute the pairs even when the data fit another population type better");
  RegisterFrontEndOption(*cmd);
  cmd->callback([&exit_code] {
    std::vector<std::string> notes;  // no summary here: the map lists distorted markers
    if (CheckBeforePairs(file, gae::ProfileOf(gae::MapTool::kMAP).tool_code, force, notes) != 0) {
      exit_code = 1;
      return;
    }
    MarkerTable t;
    const int status = CheckMapFile(file, t);
    if (status != 0) {
      ExplainRefusal(file, gae::ProfileOf(gae::MapTool::kMAP).tool_code, status);
      exit_code = 1;
      return;
    }
    const int n = t.num_markers;
    std::printf("%d markers, %lld pairs in %s\n", n, static_cast<long long>(n) * (n - 1) / 2,
                gae::PairStoreName(file).c_str());
    if (show_markers) {
      std::printf("%-20s %6s %6s %6s %6s %8s %12s %10s\n", "Marker", "A/D", "H", "B/R", "X",
                  "Category", "Chi-square", "Pr>ChiSq");
      for (int i = 0; i < n; ++i) {
        std::printf("%-20s %6d %6d %6d %6d %8d %12.4f %10.4f\n", t.Name(i).c_str(), t.size_a[i],
                    t.size_h[i], t.size_b[i], t.size_x[i], t.category[i], t.chi_square[i],
                    t.probability[i]);
      }
    }
    exit_code = 0;
  });
}

}  // namespace gaecli
