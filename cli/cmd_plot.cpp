// gaengine plot FILE: the pictures of a finished map, drawn from the run's result files and its
// pairwise file, written beside the input as <stem>.map.svg and <stem>.rf.png.
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "plot_sources.h"
#include "twopoint/pair_store_file.h"

namespace gaecli {

int WriteMapPictures(const std::string& file, const std::string& tool_name) {
  gae::MapTool tool{};
  if (!MapToolOf(tool_name.empty() ? file : tool_name, tool)) {
    std::fprintf(stderr, "%s: cannot tell the map tool from the file name; give --tool MAP, CDM, PLM or CMP\n", file.c_str());
    return 1;
  }
  PlotSources sources;
  std::string error;
  if (!LoadPlotSources(file, tool, sources, error)) {
    std::fprintf(stderr, "%s: no pictures: %s\n", file.c_str(), error.c_str());
    return 1;
  }
  const std::string svg = sources.stem + ".map.svg", png = sources.stem + ".rf.png";
  if (!WriteChartSvg(sources.chart, svg, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  std::printf("  Map chart         %s\n", svg.c_str());
  if (!sources.pairs_problem.empty()) {
    std::fprintf(stderr, "%s: no heat map: %s\n", file.c_str(), sources.pairs_problem.c_str());
    return 1;
  }
  gae::PairStoreFile store;
  // The mapping function is not needed: the picture shows frequencies and LOD scores only.
  if (!store.Open(sources.lrd_path, sources.record_length, 1)) {
    std::fprintf(stderr, "%s: cannot be read\n", sources.lrd_path.c_str());
    return 1;
  }
  sources.heat.pairs = store.Table();
  if (!WriteHeatMapPng(sources.heat, png, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  std::printf("  Heat map          %s\n", png.c_str());
  return 0;
}

void RegisterPlotCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand(
      "plot", "Draw the map chart (.map.svg) and the pairwise heat map (.rf.png) of a finished map");
  static std::string file, tool;
  cmd->add_option("file", file, "Input file of the map tool, whose result files lie beside it")->required();
  cmd->add_option("--tool", tool, "MAP, CDM, PLM or CMP when the file name does not end in .map, .cdm, .plm or .cmp");
  cmd->callback([&exit_code] { exit_code = WriteMapPictures(file, tool); });
}

}  // namespace gaecli
