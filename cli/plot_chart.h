// The linkage-map chart: linkage groups side by side as vertical bars on one cM scale, each
// marker a tick with its name beside it. Several maps of one group (a clonal map's parents, or
// the input maps of a consensus) stand side by side, with lines joining the markers they share.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace gaecli {

struct ChartTick {
  std::string name;
  float position = 0.0f;  // cM
};

struct ChartBar {
  std::string title;  // shown under the block's title when a block has several bars
  std::vector<ChartTick> ticks;
};

struct ChartBlock {
  std::string title;  // the group's name, on top
  std::vector<ChartBar> bars;
};

struct MapChart {
  std::string title;
  std::vector<ChartBlock> blocks;
};

// Where everything lands, in the picture's units (CSS pixels).
struct PlacedTick {
  std::string name;
  double tick_y = 0.0, label_y = 0.0;  // label_y: the middle of the name's line
};

struct PlacedBar {
  double x = 0.0;             // left edge of the bar
  double label_x = 0.0;       // where the names start
  double column_right = 0.0;  // right edge of the longest name
  std::vector<PlacedTick> ticks;
};

struct ChartGeometry {
  double width = 0.0, height = 0.0;
  double plot_top = 0.0, px_per_cm = 1.0, min_cm = 0.0, max_cm = 0.0;
  double font_size = 10.0, pitch = 12.5;  // marker names and their least spacing
  std::vector<std::vector<PlacedBar>> blocks;
  double Y(double cm) const { return plot_top + (cm - min_cm) * px_per_cm; }
};

// Width of `text` at `font_size`; the drawing passes the font's own measure.
using TextWidth = std::function<double(const std::string& text, double font_size)>;

ChartGeometry LayOutChart(const MapChart& chart, const TextWidth& width);

// Draws the chart into an SVG file. False with `error` when cairo cannot write it.
bool WriteChartSvg(const MapChart& chart, const std::string& path, std::string& error);

}  // namespace gaecli
