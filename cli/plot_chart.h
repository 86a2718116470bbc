// The linkage-map chart: linkage groups as vertical bars, each marker a tick with its name
// beside it, the groups wrapped into rows of a readable width with a cM scale on every row.
// Several maps of one group (a clonal map's parents, or the input maps of a consensus) stand
// side by side, with lines joining the markers they share. Groups of a single marker are not
// drawn but listed in a note under the chart.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "plot_drawing.h"

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

// A block is drawn when one of its maps has two markers or more.
bool IsDrawn(const ChartBlock& block);

// Where everything lands, in picture units (CSS pixels).
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

struct ChartRow {
  std::vector<std::size_t> blocks;  // indices into the chart's blocks, left to right
  double title_y = 0.0;             // baseline of the group names
  double zero_y = 0.0;              // where the chart's least cM would lie on this row
  double min_cm = 0.0, max_cm = 0.0;  // the span of this row's scale
  double right = 0.0;               // right edge of the row's last block
};

// A piece of the note under the chart: its lead, a group's name, or the group's one marker
// (a text of its own, so the marker's name is found like any other).
struct NotePiece {
  std::string text;
  double x = 0.0, y = 0.0;  // baseline start
  bool is_marker = false;
};

struct ChartGeometry {
  double width = 0.0, height = 0.0;
  double px_per_cm = 1.0, min_cm = 0.0;  // one scale for every row, so lengths compare
  double font_size = 10.0, pitch = 12.5;  // marker names and their least spacing
  std::vector<std::vector<PlacedBar>> blocks;  // per chart block; empty when it is not drawn
  std::vector<ChartRow> rows;
  std::vector<NotePiece> note;  // listing the groups not drawn
  double Y(const ChartRow& row, double cm) const { return row.zero_y + (cm - min_cm) * px_per_cm; }
};

// Width of `text` at `font_size`; the drawing passes the font's own measure.
using TextWidth = std::function<double(const std::string& text, double font_size)>;

// Pictures wider than this wrap their groups into further rows.
inline constexpr double kChartMaxWidth = 1800.0;

ChartGeometry LayOutChart(const MapChart& chart, const TextWidth& width, double max_width = kChartMaxWidth);

Drawing DrawChart(const MapChart& chart, const ChartGeometry& geometry);

}  // namespace gaecli
