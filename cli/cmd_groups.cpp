// gaengine groups FILE: the LOD tree of a MAP, CDM or PLM project. For each threshold, how many
// linkage groups the library's linkage rule makes, the sizes of the largest and how many markers
// stand alone; then the threshold `gaengine map` takes by default. Both commands read the same
// pair file under the same frequency cap, so they agree.
#include <algorithm>
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "lod_tree_view.h"
#include "frame/tool_profile.h"
#include "map_check.h"
#include "map_gates.h"
#include "engine/linkage_rule.h"
#include "run_settings.h"
#include "user_errors.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

struct GroupsOptions {
  std::string file;
  float from = gae::kAutoLodLow, to = gae::kAutoLodHigh, step = gae::kAutoLodStep;
  float max_rf = gae::kDefaultMaxRf;
  int largest = 10;
  bool force = false;
};

// The genotype tool of a file by its extension, as `gaengine map` takes it: .cdm, .plm, else MAP.
const gae::ToolProfile& ToolOf(const std::string& file) {
  const gae::ToolProfile* named = gae::ProfileOfLetters(file.size() >= 4 ? file.substr(file.size() - 3) : "");
  if (named != nullptr && (named->id == gae::MapTool::kCDM || named->id == gae::MapTool::kPLM)) return *named;
  return gae::ProfileOf(gae::MapTool::kMAP);
}

int RunGroups(const GroupsOptions& o) {
  MarkerTable markers;
  const int tool_code = ToolOf(o.file).tool_code;
  std::vector<std::string> notes;  // the tree prints no summary: a distortion list is the map's
  if (CheckBeforePairs(o.file, tool_code, o.force, notes) != 0) return 1;
  if (const int status = CheckToolFile(o.file, tool_code, markers); status != 0) {
    ExplainRefusal(o.file, tool_code, status);
    return 1;
  }
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(o.file, markers.num_markers, o.from, o.to, o.step, rows, o.max_rf)) {
    std::fprintf(stderr, "%s: cannot read %s\n", o.file.c_str(), gae::PairStoreName(o.file).c_str());
    return 1;
  }
  const int few = FewMarkers(markers.num_markers);
  std::printf("LOD tree of %s: %d markers (anchors not used), pairs below a frequency of %.2f\n\n", o.file.c_str(),
              markers.num_markers, static_cast<double>(o.max_rf));
  std::printf("%6s %7s %7s %6s  %s\n", "LOD", "groups", ("of " + std::to_string(few) + "+").c_str(), "alone",
              "largest groups");
  for (const gae::LodTreeRow& row : rows) {
    std::string sizes;
    for (size_t k = 0; k < row.sizes.size() && k < static_cast<size_t>(o.largest) && row.sizes[k] > 1; ++k) {
      if (k > 0) sizes += ' ';
      sizes += std::to_string(row.sizes[k]);
    }
    std::printf("%6.1f %7d %7d %6d  %s\n", static_cast<double>(row.threshold), row.groups,
                gae::GroupsOfAtLeast(row, few), row.singletons, sizes.c_str());
  }
  const AutoLod choice = ChooseLod(rows, markers.num_markers);
  if (choice.found) std::printf("\ngaengine map (--lod auto) takes %s\n", choice.reason.c_str());
  return 0;
}

}  // namespace

void RegisterGroupsCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("groups", "The LOD tree of a MAP, CDM or PLM project: linkage groups at each LOD threshold");
  static GroupsOptions options;
  cmd->add_option("file", options.file, "MAP, CDM or PLM input file (by its extension)")->required();
  cmd->add_option("--from", options.from, "Lowest LOD threshold")->capture_default_str();
  cmd->add_option("--to", options.to, "Highest LOD threshold")->capture_default_str();
  cmd->add_option("--step", options.step, "Step between thresholds")->capture_default_str()->check(CLI::PositiveNumber);
  cmd->add_option("--largest", options.largest, "How many of the largest group sizes to list")->capture_default_str();
  cmd->add_flag("--force", options.force, "Build the tree even when the data fit another population type better");
  cmd->add_option("--max-rf", options.max_rf, "Pairs link only if their recombination frequency is also below this")
      ->capture_default_str()
      ->check(CLI::Range(0.0f, 1.0f));
  RegisterFrontEndOption(*cmd);
  cmd->callback([&exit_code] { exit_code = RunGroups(options); });
}

}  // namespace gaecli
