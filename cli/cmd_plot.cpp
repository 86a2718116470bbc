// gaengine plot FILE: the pictures of a finished map, drawn from the run's result files and its
// pairwise file, written beside the input: <stem>.map.svg (the chart), <stem>.rf.png (the heat
// map) and, when the table of loci gives positions, <stem>.physical.svg (map against genome).
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "plot_cairo.h"
#include "plot_chart.h"
#include "plot_physical.h"
#include "plot_sources.h"
#include "run_guard.h"
#include "twopoint/pair_store_file.h"

namespace gaecli {

namespace {

struct PlotOptions {
  std::string file, tool, group, format = "svg";
};

bool FormatOf(const std::string& word, PictureFormat& format) {
  for (PictureFormat f : {PictureFormat::kSvg, PictureFormat::kPdf, PictureFormat::kPng})
    if (word == ExtensionOf(f)) {
      format = f;
      return true;
    }
  return false;
}

// A group's name as part of a file name: letters, digits, '-', '_' and '.' kept, others '_'.
std::string FileSafe(const std::string& name) {
  std::string out;
  for (char c : name) out += std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '.' ? c : '_';
  return out;
}

bool Write(const Drawing& drawing, PictureFormat format, const std::string& path, const char* what) {
  std::string error;
  if (!WriteDrawing(drawing, format, path, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return false;
  }
  std::printf("  %-18s%s\n", what, path.c_str());
  return true;
}

// The heat map is a raster: PNG, or PDF where its names stay text.
PictureFormat HeatMapFormat(PictureFormat format) {
  return format == PictureFormat::kPdf ? PictureFormat::kPdf : PictureFormat::kPng;
}

// The chart, the map against the genome and the heat map; `tail` is a group's part of the name.
std::vector<std::string> PictureSuffixes(const std::string& tail, PictureFormat format) {
  const std::string ext = ExtensionOf(format);
  return {tail + ".map." + ext, tail + ".physical." + ext, tail + ".rf." + ExtensionOf(HeatMapFormat(format))};
}

int Draw(const PlotOptions& o) {
  gae::MapTool tool{};
  if (!MapToolOf(o.tool.empty() ? o.file : o.tool, tool)) {
    std::fprintf(stderr, "%s: cannot tell the map tool from the file name; give --tool MAP, CDM, PLM or CMP\n", o.file.c_str());
    return 1;
  }
  PictureFormat format{};
  if (!FormatOf(o.format, format)) {
    std::fprintf(stderr, "--format %s: give svg, pdf or png\n", o.format.c_str());
    return 1;
  }
  PlotSources sources;
  std::string error;
  if (!LoadPlotSources(o.file, tool, sources, error)) {
    std::fprintf(stderr, "%s: no pictures: %s\n", o.file.c_str(), error.c_str());
    return 1;
  }
  std::string stem = sources.stem;
  if (!o.group.empty()) {
    if (!KeepOneGroup(o.group, sources, error)) {
      std::fprintf(stderr, "%s: %s\n", o.file.c_str(), error.c_str());
      return 1;
    }
    stem += "." + FileSafe(sources.group_names.front());
  }
  const std::string ext = ExtensionOf(format);
  const PictureFormat heat_format = HeatMapFormat(format);
  const std::string tail = stem.substr(sources.stem.size());  // the group's part of the names
  RunScope scope;
  if (!scope.Begin(o.file, PictureSuffixes(tail, format))) return 1;
  const MapChart& chart = sources.chart;
  if (!Write(DrawChart(chart, LayOutChart(chart, CairoTextWidth)), format, stem + ".map." + ext, "Map chart")) return 1;
  const std::vector<PhysicalPanel> panels = PhysicalPanels(sources);
  if (!panels.empty() &&
      !Write(DrawPhysical(sources.file_name + ": map position against position on the genome", panels), format,
             stem + ".physical." + ext, "Map and genome")) {
    return 1;
  }
  if (!sources.pairs_problem.empty()) {
    std::fprintf(stderr, "%s: no heat map: %s\n", o.file.c_str(), sources.pairs_problem.c_str());
    return 1;
  }
  gae::PairStoreFile store;
  // The mapping function is not needed: the picture shows frequencies and LOD scores only.
  if (!store.Open(sources.lrd_path, sources.record_length, 1)) {
    std::fprintf(stderr, "%s: cannot be read\n", sources.lrd_path.c_str());
    return 1;
  }
  sources.heat.pairs = store.Table();
  return Write(DrawHeatMap(sources.heat, LayOutHeatMap(sources.heat)), heat_format,
               stem + ".rf." + ExtensionOf(heat_format), "Heat map")
             ? 0
             : 1;
}

}  // namespace

std::vector<std::string> MapPictureSuffixes() { return PictureSuffixes("", PictureFormat::kSvg); }

int WriteMapPictures(const std::string& file, const std::string& tool_name) {
  PlotOptions o;
  o.file = file;
  o.tool = tool_name;
  return Draw(o);
}

void RegisterPlotCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand(
      "plot", "Draw the map chart (.map.svg), the pairwise heat map (.rf.png) and, for imported data with "
              "positions, the map against the genome (.physical.svg) of a finished map");
  static PlotOptions o;
  cmd->add_option("file", o.file, "Input file of the map tool, whose result files lie beside it")->required();
  cmd->add_option("--tool", o.tool, "MAP, CDM, PLM or CMP when the file name does not end in .map, .cdm, .plm or .cmp");
  cmd->add_option("--group", o.group,
                  "Draw one group only, by its name in the pictures, its name in the reports, or its number; "
                  "the files are named <stem>.<group>.map.svg and so on");
  cmd->add_option("--format", o.format,
                  "svg (default), pdf or png for the chart and the map against the genome; the heat map is PNG, "
                  "or PDF with pdf")
      ->check(CLI::IsMember({"svg", "pdf", "png"}));
  cmd->callback([&exit_code] { exit_code = Draw(o); });
}

}  // namespace gaecli
