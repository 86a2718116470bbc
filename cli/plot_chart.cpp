#include "plot_chart.h"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "plot_cairo.h"
#include "plot_label_spread.h"

namespace gaecli {

namespace {

constexpr double kMargin = 16.0;
constexpr double kAxisWidth = 56.0;   // scale numbers and the axis itself
constexpr double kBarWidth = 10.0;
constexpr double kTickOverhang = 4.0;
constexpr double kLeaderMin = 16.0, kLeaderMax = 72.0;  // room for the leaders between tick and name
constexpr double kJoinGap = 44.0;     // between two maps of a group: the joining lines
constexpr double kBlockGap = 30.0;
constexpr double kTitleFont = 15.0, kBlockFont = 12.0, kBarFont = 10.0;
constexpr double kMinPlotHeight = 480.0;
// Names shrink from 10 to 5 units as groups grow past 240 markers, so a dense map stays a few
// thousand units tall instead of tens of thousands.
constexpr double kNameFontMax = 10.0, kNameFontMin = 5.0, kTargetHeight = 3000.0, kLineSpacing = 1.25;

bool AnyMultiBarBlock(const MapChart& chart) {
  return std::any_of(chart.blocks.begin(), chart.blocks.end(), [](const ChartBlock& b) { return b.bars.size() > 1; });
}

// A round step of the scale that leaves at least 40 units between its numbers.
double ScaleStep(double px_per_cm) {
  for (double step : {1.0, 2.0, 5.0, 10.0, 20.0, 25.0, 50.0, 100.0, 200.0, 500.0, 1000.0})
    if (step * px_per_cm >= 40.0) return step;
  return 1000.0;
}

}  // namespace

ChartGeometry LayOutChart(const MapChart& chart, const TextWidth& width) {
  ChartGeometry g;
  std::size_t most = 1;
  bool any_tick = false;
  g.min_cm = 0.0;
  g.max_cm = 0.0;
  for (const ChartBlock& block : chart.blocks)
    for (const ChartBar& bar : block.bars) {
      most = std::max(most, bar.ticks.size());
      for (const ChartTick& t : bar.ticks) {
        g.min_cm = std::min(g.min_cm, static_cast<double>(t.position));
        g.max_cm = std::max(g.max_cm, static_cast<double>(t.position));
        any_tick = true;
      }
    }
  if (!any_tick || g.max_cm - g.min_cm < 1.0) g.max_cm = g.min_cm + 1.0;
  g.font_size = std::clamp(kTargetHeight / (kLineSpacing * static_cast<double>(most)), kNameFontMin, kNameFontMax);
  g.pitch = kLineSpacing * g.font_size;
  const double plot_height = std::max(kMinPlotHeight, static_cast<double>(most) * g.pitch);
  g.plot_top = (AnyMultiBarBlock(chart) ? 86.0 : 72.0) + g.pitch;
  g.px_per_cm = plot_height / (g.max_cm - g.min_cm);
  // Names may spread a little past the ends of the longest bar.
  const double low = g.plot_top - g.pitch, high = g.plot_top + plot_height + g.pitch;
  g.height = high + g.pitch + kMargin;

  double x = kMargin + kAxisWidth;
  for (const ChartBlock& block : chart.blocks) {
    const double block_left = x;
    std::vector<PlacedBar> placed;
    for (std::size_t k = 0; k < block.bars.size(); ++k) {
      const ChartBar& bar = block.bars[k];
      PlacedBar p;
      p.x = x;
      double longest = 0.0, furthest = 0.0;
      std::vector<double> wanted;
      for (const ChartTick& t : bar.ticks) {
        longest = std::max(longest, width(t.name, g.font_size));
        wanted.push_back(g.Y(t.position));
      }
      const std::vector<double> spread = SpreadLabels(wanted, g.pitch, low, high);
      for (std::size_t i = 0; i < bar.ticks.size(); ++i) {
        p.ticks.push_back({bar.ticks[i].name, wanted[i], spread[i]});
        furthest = std::max(furthest, std::abs(spread[i] - wanted[i]));
      }
      // Names pushed far from their ticks get a wider channel, so their leaders fan out
      // instead of merging into one grey band.
      p.label_x = x + kBarWidth + kTickOverhang + std::clamp(0.2 * furthest, kLeaderMin, kLeaderMax);
      p.column_right = p.label_x + longest;
      double right = p.column_right;
      if (block.bars.size() > 1) right = std::max(right, x + width(bar.title, kBarFont * 1.1));
      x = right + (k + 1 < block.bars.size() ? kJoinGap : 0.0);
      placed.push_back(std::move(p));
    }
    x = std::max({x, block_left + width(block.title, kBlockFont * 1.1), block_left + kBarWidth});
    g.blocks.push_back(std::move(placed));
    x += kBlockGap;
  }
  g.width = std::max(x - kBlockGap + kMargin, kMargin * 2 + kAxisWidth + width(chart.title, kTitleFont * 1.1));
  return g;
}

namespace {

void DrawScale(cairo_t* cr, const ChartGeometry& g) {
  const double axis_x = kMargin + kAxisWidth - 16.0;
  cairo_set_source_rgb(cr, 0.2, 0.2, 0.2);
  cairo_set_line_width(cr, 1.0);
  cairo_move_to(cr, axis_x, g.Y(g.min_cm));
  cairo_line_to(cr, axis_x, g.Y(g.max_cm));
  cairo_stroke(cr);
  const double step = ScaleStep(g.px_per_cm);
  SetFont(cr, 9.0, false);
  for (double cm = std::ceil(g.min_cm / step) * step; cm <= g.max_cm + 1e-9; cm += step) {
    const double y = g.Y(cm);
    cairo_move_to(cr, axis_x - 4.0, y);
    cairo_line_to(cr, axis_x, y);
    cairo_stroke(cr);
    ShowText(cr, FormatNumber(cm), axis_x - 6.0, y + 3.0, TextAlign::kRight);
  }
  ShowText(cr, "cM", axis_x, g.plot_top - g.pitch - 6.0, TextAlign::kCentre);
}

void DrawBar(cairo_t* cr, const ChartGeometry& g, const ChartBar& bar, const PlacedBar& p) {
  if (bar.ticks.empty()) return;
  const double top = p.ticks.front().tick_y, bottom = p.ticks.back().tick_y;
  cairo_rectangle(cr, p.x, top - 1.0, kBarWidth, std::max(bottom - top, 0.0) + 2.0);
  cairo_set_source_rgb(cr, 0.85, 0.89, 0.94);
  cairo_fill_preserve(cr);
  cairo_set_source_rgb(cr, 0.2, 0.29, 0.37);
  cairo_set_line_width(cr, 1.0);
  cairo_stroke(cr);
  cairo_set_line_width(cr, std::min(0.8, g.pitch / 8.0));
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  for (const PlacedTick& t : p.ticks) {
    cairo_move_to(cr, p.x - kTickOverhang, t.tick_y);
    cairo_line_to(cr, p.x + kBarWidth + kTickOverhang, t.tick_y);
  }
  cairo_stroke(cr);
  // A leader runs level out of the tick, then slants to its name.
  cairo_set_line_width(cr, 0.5);
  cairo_set_source_rgb(cr, 0.45, 0.45, 0.45);
  const double start = p.x + kBarWidth + kTickOverhang;
  for (const PlacedTick& t : p.ticks) {
    cairo_move_to(cr, start, t.tick_y);
    cairo_line_to(cr, start + 3.0, t.tick_y);
    cairo_line_to(cr, p.label_x - 3.0, t.label_y);
    cairo_line_to(cr, p.label_x - 1.0, t.label_y);
  }
  cairo_stroke(cr);
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  SetFont(cr, g.font_size, false);
  for (const PlacedTick& t : p.ticks) ShowText(cr, t.name, p.label_x, t.label_y + 0.35 * g.font_size, TextAlign::kLeft);
}

// Lines from each name of one map to the tick of the same marker on the next map.
void DrawJoins(cairo_t* cr, const PlacedBar& left, const PlacedBar& right) {
  std::map<std::string, double> right_ticks;
  for (const PlacedTick& t : right.ticks) right_ticks.emplace(t.name, t.tick_y);
  cairo_set_line_width(cr, 0.6);
  cairo_set_source_rgb(cr, 0.16, 0.44, 0.7);
  for (const PlacedTick& t : left.ticks) {
    const auto found = right_ticks.find(t.name);
    if (found == right_ticks.end()) continue;
    cairo_move_to(cr, left.column_right + 2.0, t.label_y);
    cairo_line_to(cr, right.x - kTickOverhang - 2.0, found->second);
  }
  cairo_stroke(cr);
}

}  // namespace

bool WriteChartSvg(const MapChart& chart, const std::string& path, std::string& error) {
  const ChartGeometry g = LayOutChart(chart, CairoTextWidth);
  cairo_surface_t* surface = cairo_svg_surface_create(path.c_str(), g.width, g.height);
  cairo_t* cr = cairo_create(surface);
  cairo_set_source_rgb(cr, 1.0, 1.0, 1.0);
  cairo_paint(cr);
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  SetFont(cr, kTitleFont, true);
  ShowText(cr, chart.title, kMargin, 26.0, TextAlign::kLeft);
  DrawScale(cr, g);
  const bool sub_titles = AnyMultiBarBlock(chart);
  for (std::size_t b = 0; b < chart.blocks.size(); ++b) {
    const ChartBlock& block = chart.blocks[b];
    const std::vector<PlacedBar>& placed = g.blocks[b];
    const double left = placed.empty() ? 0.0 : placed.front().x;
    cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
    SetFont(cr, kBlockFont, true);
    ShowText(cr, block.title, left, 54.0, TextAlign::kLeft);
    for (std::size_t k = 0; k < block.bars.size(); ++k) {
      if (sub_titles && block.bars.size() > 1) {
        cairo_set_source_rgb(cr, 0.3, 0.3, 0.3);
        SetFont(cr, kBarFont, false);
        ShowText(cr, block.bars[k].title, placed[k].x, 70.0, TextAlign::kLeft);
      }
      DrawBar(cr, g, block.bars[k], placed[k]);
      if (k > 0) DrawJoins(cr, placed[k - 1], placed[k]);
    }
  }
  cairo_destroy(cr);
  cairo_surface_finish(surface);
  return ReleaseSurface(surface, cairo_surface_status(surface), path, error);
}

}  // namespace gaecli
