#include "plot_chart.h"

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
constexpr double kTitleFont = 15.0, kBlockFont = 12.0, kBarFont = 10.0, kNoteFont = 11.0;
constexpr double kTitleBand = 40.0;   // the chart's title
constexpr double kRowGap = 28.0;
constexpr double kMinPlotHeight = 480.0;
// Names shrink from 10 to 5 units as groups grow past 240 markers, so a dense map stays a few
// thousand units tall instead of tens of thousands.
constexpr double kNameFontMax = 10.0, kNameFontMin = 5.0, kTargetHeight = 3000.0, kLineSpacing = 1.25;

constexpr Colour kInk{0, 0, 0}, kGrey{115, 115, 115}, kAxisInk{51, 51, 51}, kBarFill{217, 227, 240},
    kBarEdge{51, 74, 94}, kJoin{41, 112, 179}, kSubtitle{77, 77, 77};

// A round step of the scale that leaves at least 40 units between its numbers.
double ScaleStep(double px_per_cm) {
  for (double step : {1.0, 2.0, 5.0, 10.0, 20.0, 25.0, 50.0, 100.0, 200.0, 500.0, 1000.0})
    if (step * px_per_cm >= 40.0) return step;
  return 1000.0;
}

// Blocks of the given widths cut into consecutive rows no wider than `limit` (a block wider than
// it stands alone). The fewest rows greedy filling allows, with the widest row as narrow as it
// can be, so the rows come out of even width.
std::vector<std::vector<std::size_t>> WrapRows(const std::vector<std::size_t>& order, const std::vector<double>& widths,
                                               double limit) {
  auto fill = [&](double cap) {
    std::vector<std::vector<std::size_t>> rows;
    double used = 0.0;
    for (std::size_t k = 0; k < order.size(); ++k) {
      const double w = widths[k];
      if (rows.empty() || used + kBlockGap + w > cap) {
        rows.push_back({});
        used = w;
      } else {
        used += kBlockGap + w;
      }
      rows.back().push_back(order[k]);
    }
    return rows;
  };
  const std::size_t fewest = fill(limit).size();
  double lo = 0.0, hi = limit;
  for (double w : widths) lo = std::max(lo, w);
  if (lo >= hi) return fill(limit);
  for (int step = 0; step < 40; ++step) {
    const double mid = 0.5 * (lo + hi);
    (fill(mid).size() <= fewest ? hi : lo) = mid;
  }
  return fill(hi);
}

// The note's pieces set into lines no wider than `limit` from (left, top): the lead, then each
// group's name with its marker after it, a group and its marker never split across lines.
std::vector<NotePiece> SetNote(const std::vector<std::pair<std::string, std::string>>& groups, double left, double top,
                               double limit, const TextWidth& width) {
  const std::string lead = "Groups of one marker, not drawn:";
  const double line = kNoteFont * 1.4, space = 0.5 * kNoteFont, gap = 1.5 * kNoteFont;
  std::vector<NotePiece> pieces{{lead, left, top + kNoteFont, false}};
  double x = left + width(lead, kNoteFont) + gap, y = top + kNoteFont;
  for (const auto& [group, marker] : groups) {
    const double group_w = width(group, kNoteFont), marker_w = width(marker, kNoteFont);
    if (x + group_w + space + marker_w > left + limit && x > left) {
      x = left;
      y += line;
    }
    pieces.push_back({group, x, y, false});
    pieces.push_back({marker, x + group_w + space, y, true});
    x += group_w + space + marker_w + gap;
  }
  return pieces;
}

}  // namespace

bool IsDrawn(const ChartBlock& block) {
  return std::any_of(block.bars.begin(), block.bars.end(), [](const ChartBar& b) { return b.ticks.size() > 1; });
}

ChartGeometry LayOutChart(const MapChart& chart, const TextWidth& width, double max_width) {
  ChartGeometry g;
  std::size_t most = 1;
  double max_cm = 0.0;
  bool any_tick = false;
  bool sub_titles = false;
  std::vector<std::size_t> drawn;
  std::vector<std::pair<std::string, std::string>> single;  // group, marker
  for (std::size_t b = 0; b < chart.blocks.size(); ++b) {
    const ChartBlock& block = chart.blocks[b];
    if (!IsDrawn(block)) {
      for (const ChartBar& bar : block.bars)
        if (!bar.ticks.empty()) {
          single.emplace_back(block.title, bar.ticks[0].name);
          break;
        }
      continue;
    }
    drawn.push_back(b);
    sub_titles = sub_titles || block.bars.size() > 1;
    for (const ChartBar& bar : block.bars) {
      most = std::max(most, bar.ticks.size());
      for (const ChartTick& t : bar.ticks) {
        g.min_cm = std::min(g.min_cm, static_cast<double>(t.position));
        max_cm = std::max(max_cm, static_cast<double>(t.position));
        any_tick = true;
      }
    }
  }
  if (!any_tick || max_cm - g.min_cm < 1.0) max_cm = g.min_cm + 1.0;
  g.font_size = std::clamp(kTargetHeight / (kLineSpacing * static_cast<double>(most)), kNameFontMin, kNameFontMax);
  g.pitch = kLineSpacing * g.font_size;
  const double plot_height = std::max(kMinPlotHeight, static_cast<double>(most) * g.pitch);
  g.px_per_cm = plot_height / (max_cm - g.min_cm);
  // Names may spread a little past the ends of the longest bar. Until the rows are stacked,
  // heights count from the chart's least cM.
  const double low = -g.pitch, high = plot_height + g.pitch;

  // Each drawn block laid out from x = 0; the rows shift it into place.
  g.blocks.assign(chart.blocks.size(), {});
  std::vector<double> block_width;
  for (std::size_t b : drawn) {
    const ChartBlock& block = chart.blocks[b];
    double x = 0.0;
    for (std::size_t k = 0; k < block.bars.size(); ++k) {
      const ChartBar& bar = block.bars[k];
      PlacedBar p;
      p.x = x;
      double longest = 0.0, furthest = 0.0;
      std::vector<double> wanted;
      for (const ChartTick& t : bar.ticks) {
        longest = std::max(longest, width(t.name, g.font_size));
        wanted.push_back((t.position - g.min_cm) * g.px_per_cm);
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
      if (block.bars.size() > 1) right = std::max(right, x + width(bar.title, kBarFont));
      x = right + (k + 1 < block.bars.size() ? kJoinGap : 0.0);
      g.blocks[b].push_back(std::move(p));
    }
    block_width.push_back(std::max({x, width(block.title, kBlockFont * 1.1), kBarWidth}));
  }

  const double left = kMargin + kAxisWidth;
  const double title_band = sub_titles ? 32.0 : 18.0;
  double y = kTitleBand;
  double widest = kMargin * 2 + width(chart.title, kTitleFont * 1.1);
  std::vector<double> width_of(chart.blocks.size(), 0.0);
  for (std::size_t k = 0; k < drawn.size(); ++k) width_of[drawn[k]] = block_width[k];
  for (const std::vector<std::size_t>& members : WrapRows(drawn, block_width, max_width - left - kMargin)) {
    ChartRow row;
    row.blocks = members;
    row.min_cm = 1e300;
    row.max_cm = -1e300;
    double top = 1e300, bottom = -1e300, x = left;
    for (std::size_t b : members) {
      for (PlacedBar& p : g.blocks[b]) {
        p.x += x;
        p.label_x += x;
        p.column_right += x;
        for (const PlacedTick& t : p.ticks) {
          top = std::min({top, t.tick_y, t.label_y - 0.5 * g.pitch});
          bottom = std::max({bottom, t.tick_y, t.label_y + 0.5 * g.pitch});
        }
      }
      for (const ChartBar& bar : chart.blocks[b].bars)
        for (const ChartTick& t : bar.ticks) {
          row.min_cm = std::min(row.min_cm, static_cast<double>(t.position));
          row.max_cm = std::max(row.max_cm, static_cast<double>(t.position));
        }
      x += width_of[b] + kBlockGap;
    }
    row.right = x - kBlockGap;
    // The scale starts at a round number at or below the row's first marker.
    const double step = ScaleStep(g.px_per_cm);
    row.min_cm = std::floor(row.min_cm / step) * step;
    row.max_cm = std::max(row.max_cm, row.min_cm + step);
    top = std::min(top, (row.min_cm - g.min_cm) * g.px_per_cm - 6.0);
    row.title_y = y + 16.0;
    row.zero_y = y + title_band + 14.0 - top;
    for (std::size_t b : members)
      for (PlacedBar& p : g.blocks[b])
        for (PlacedTick& t : p.ticks) {
          t.tick_y += row.zero_y;
          t.label_y += row.zero_y;
        }
    y = row.zero_y + bottom + kRowGap;
    widest = std::max(widest, row.right + kMargin);
    g.rows.push_back(std::move(row));
  }
  g.width = std::max(widest, std::min(max_width, 480.0));
  if (!single.empty()) {
    g.note = SetNote(single, kMargin, y, g.width - 2 * kMargin, width);
    y = g.note.back().y + 0.4 * kNoteFont;
  }
  g.height = y + kMargin;
  return g;
}

namespace {

void DrawScale(Drawing& d, const ChartGeometry& g, const ChartRow& row) {
  const double axis_x = kMargin + kAxisWidth - 16.0;
  d.Line(axis_x, g.Y(row, row.min_cm), axis_x, g.Y(row, row.max_cm), 1.0, kAxisInk);
  const double step = ScaleStep(g.px_per_cm);
  // Ticks first, then numbers: like shapes in a run make a smaller file.
  for (double cm = row.min_cm; cm <= row.max_cm + 1e-9; cm += step)
    d.Line(axis_x - 4.0, g.Y(row, cm), axis_x, g.Y(row, cm), 1.0, kAxisInk);
  for (double cm = row.min_cm; cm <= row.max_cm + 1e-9; cm += step)
    d.Text(FormatNumber(cm), axis_x - 6.0, g.Y(row, cm) + 3.0, 9.0, TextAnchor::kEnd, kAxisInk);
  d.Text("cM", axis_x, g.Y(row, row.min_cm) - 8.0, 9.0, TextAnchor::kMiddle, kAxisInk);
}

void DrawBar(Drawing& d, const ChartGeometry& g, const PlacedBar& p) {
  if (p.ticks.empty()) return;
  const double top = p.ticks.front().tick_y, bottom = p.ticks.back().tick_y;
  d.Add(RectShape{p.x, top - 1.0, kBarWidth, std::max(bottom - top, 0.0) + 2.0, true, kBarFill, 1.0, kBarEdge});
  for (const PlacedTick& t : p.ticks)
    d.Line(p.x - kTickOverhang, t.tick_y, p.x + kBarWidth + kTickOverhang, t.tick_y, std::min(0.8, g.pitch / 8.0), kInk);
  // A leader runs level out of the tick, then slants to its name.
  const double start = p.x + kBarWidth + kTickOverhang;
  for (const PlacedTick& t : p.ticks) {
    d.Add(PolylineShape{
        {{start, t.tick_y}, {start + 3.0, t.tick_y}, {p.label_x - 3.0, t.label_y}, {p.label_x - 1.0, t.label_y}}, 0.5, kGrey});
  }
  for (const PlacedTick& t : p.ticks)
    d.Text(t.name, p.label_x, t.label_y + 0.35 * g.font_size, g.font_size, TextAnchor::kStart);
}

// Lines from each name of one map to the tick of the same marker on the next map.
void DrawJoins(Drawing& d, const PlacedBar& left, const PlacedBar& right) {
  std::map<std::string, double> right_ticks;
  for (const PlacedTick& t : right.ticks) right_ticks.emplace(t.name, t.tick_y);
  for (const PlacedTick& t : left.ticks) {
    const auto found = right_ticks.find(t.name);
    if (found == right_ticks.end()) continue;
    d.Line(left.column_right + 2.0, t.label_y, right.x - kTickOverhang - 2.0, found->second, 0.6, kJoin);
  }
}

}  // namespace

Drawing DrawChart(const MapChart& chart, const ChartGeometry& g) {
  Drawing d;
  d.width = g.width;
  d.height = g.height;
  d.Text(chart.title, kMargin, 26.0, kTitleFont, TextAnchor::kStart, kInk, true);
  for (const ChartRow& row : g.rows) {
    DrawScale(d, g, row);
    for (std::size_t b : row.blocks) {
      const ChartBlock& block = chart.blocks[b];
      const std::vector<PlacedBar>& placed = g.blocks[b];
      d.Text(block.title, placed.front().x, row.title_y, kBlockFont, TextAnchor::kStart, kInk, true);
      for (std::size_t k = 0; k < placed.size(); ++k) {
        if (block.bars.size() > 1)
          d.Text(block.bars[k].title, placed[k].x, row.title_y + 15.0, kBarFont, TextAnchor::kStart, kSubtitle);
        DrawBar(d, g, placed[k]);
        if (k > 0) DrawJoins(d, placed[k - 1], placed[k]);
      }
    }
  }
  for (const NotePiece& p : g.note)
    d.Text(p.text, p.x, p.y, kNoteFont, TextAnchor::kStart, p.is_marker ? kInk : kSubtitle);
  return d;
}

}  // namespace gaecli
