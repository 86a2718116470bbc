// gaengine groups FILE: the LOD tree of a MAP project. For each threshold, how many linkage
// groups single linkage makes, the sizes of the largest and how many markers stand alone; then
// the threshold `gaengine map --lod auto` would take.
#include <algorithm>
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "lod_tree_view.h"
#include "frame/tool_profile.h"
#include "map_check.h"
#include "map_gates.h"
#include "user_errors.h"
#include "twopoint/pair_store_writer.h"

namespace gaecli {

namespace {

struct GroupsOptions {
  std::string file;
  float from = 2.0f, to = 15.0f, step = 1.0f;
  int largest = 10;
  bool force = false;
};

int RunGroups(const GroupsOptions& o) {
  MarkerTable markers;
  std::vector<std::string> notes;  // the tree prints no summary: a distortion list is the map's
  if (CheckBeforePairs(o.file, gae::ProfileOf(gae::MapTool::kMAP).tool_code, o.force, notes) != 0) return 1;
  if (const int status = CheckMapFile(o.file, markers); status != 0) {
    ExplainRefusal(o.file, gae::ProfileOf(gae::MapTool::kMAP).tool_code, status);
    return 1;
  }
  std::vector<gae::LodTreeRow> rows;
  if (!ProjectLodTree(o.file, markers.num_markers, o.from, o.to, o.step, rows)) {
    std::fprintf(stderr, "%s: cannot read %s\n", o.file.c_str(), gae::PairStoreName(o.file).c_str());
    return 1;
  }
  const int few = FewMarkers(markers.num_markers);
  std::printf("LOD tree of %s: %d markers (anchors not used)\n\n", o.file.c_str(), markers.num_markers);
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
  if (choice.found) std::printf("\n--lod auto takes %s\n", choice.reason.c_str());
  return 0;
}

}  // namespace

void RegisterGroupsCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand("groups", "The LOD tree of a MAP project: linkage groups at each LOD threshold");
  static GroupsOptions options;
  cmd->add_option("file", options.file, "MAP input file")->required();
  cmd->add_option("--from", options.from, "Lowest LOD threshold")->capture_default_str();
  cmd->add_option("--to", options.to, "Highest LOD threshold")->capture_default_str();
  cmd->add_option("--step", options.step, "Step between thresholds")->capture_default_str()->check(CLI::PositiveNumber);
  cmd->add_option("--largest", options.largest, "How many of the largest group sizes to list")->capture_default_str();
  cmd->add_flag("--force", options.force, "Build the tree even when the data fit another population type better");
  cmd->callback([&exit_code] { exit_code = RunGroups(options); });
}

}  // namespace gaecli
