#include "plot_heatmap.h"

#include <algorithm>
#include <cmath>

#include "plot_cairo.h"

namespace gaecli {

namespace {

constexpr int kMargin = 16;
constexpr int kTitleBand = 40;        // the title line
constexpr int kGroupBand = 18;        // group names above the matrix
constexpr double kNameFont = 10.0;
constexpr int kLegendBar = 16, kLegendGap = 44, kLegendHeight = 240;
constexpr int kLineHeight = 18;       // a caption line
constexpr int kTargetSide = 1200;     // small maps get big cells, up to 40 pixels
constexpr int kMaxCell = 40;
constexpr const char* kCaption = "Above the diagonal: recombination frequency.  Below: LOD score.";
constexpr const char* kConsensusCaption = "Recombination frequency on both sides of the diagonal.";

constexpr Rgb kStops[] = {{49, 54, 149},   {69, 117, 180}, {171, 217, 233}, {255, 255, 191},
                          {253, 174, 97},  {244, 109, 67}, {165, 0, 38}};
constexpr Rgb kBoundary{255, 255, 255}, kDiagonal{32, 32, 32}, kNoValue{200, 200, 200};
constexpr Colour kInk{0, 0, 0};

double RfStrength(double rf) { return 1.0 - std::clamp(rf, 0.0, 0.5) / 0.5; }
double LodStrength(double lod) { return std::clamp(lod, 0.0, kLodCap) / kLodCap; }
Colour ToColour(Rgb c) { return {c.r, c.g, c.b}; }

std::string SwitchedCaption(double lod) {
  return "Green: frequency above 0.5 at LOD \xE2\x89\xA5 " + FormatNumber(lod) +
         ", linked markers with one marker's alleles switched.";
}

}  // namespace

Rgb LinkageColour(double strength) {
  const double t = std::clamp(strength, 0.0, 1.0) * 6.0;
  const int k = std::min(5, static_cast<int>(t));
  const double f = t - k;
  const Rgb& a = kStops[k];
  const Rgb& b = kStops[k + 1];
  auto mix = [f](uint8_t u, uint8_t v) { return static_cast<uint8_t>(std::lround(u + (v - u) * f)); };
  return {mix(a.r, b.r), mix(a.g, b.g), mix(a.b, b.b)};
}

HeatGeometry LayOutHeatMap(const HeatMapData& data) {
  HeatGeometry g;
  int total = 0, filled = 0;
  for (const HeatGroup& group : data.groups) {
    total += group.size;
    filled += group.size > 0 ? 1 : 0;
  }
  g.cell = total <= kCellPerPairLimit ? std::clamp(kTargetSide / std::max(total, 1), 1, kMaxCell) : 0;
  const int gap = g.cell >= 6 ? 2 : 1;
  // Scaled down, the pixels left after the boundaries are shared out by group size.
  const double share = g.cell == 0 ? static_cast<double>(kCellPerPairLimit - (filled - 1) * gap) / total : 0.0;
  int pixel = 0, marker = 0;
  bool first = true;
  for (const HeatGroup& group : data.groups) {
    if (group.size > 0 && !first) pixel += gap;
    g.group_first_pixel.push_back(pixel);
    if (group.size > 0) {
      first = false;
      if (g.cell > 0) {
        for (int m = 0; m < group.size; ++m) g.slots.push_back({marker + m, marker + m + 1, pixel + m * g.cell, g.cell});
        pixel += group.size * g.cell;
      } else {
        const int pixels = std::max(1, static_cast<int>(std::lround(group.size * share)));
        for (int k = 0; k < pixels; ++k) {
          const int lo = static_cast<int>(static_cast<int64_t>(k) * group.size / pixels);
          const int hi = std::max(lo + 1, static_cast<int>(static_cast<int64_t>(k + 1) * group.size / pixels));
          g.slots.push_back({marker + lo, marker + std::min(hi, group.size), pixel + k, 1});
        }
        pixel += pixels;
      }
    }
    g.group_end_pixel.push_back(pixel);
    marker += group.size;
  }
  g.matrix_side = pixel;

  double name_band = 0.0;
  if (g.cell >= kNamedCell && data.names.size() == static_cast<std::size_t>(total)) {
    g.name_font = std::min(kNameFont, 0.85 * g.cell);
    for (const std::string& name : data.names) name_band = std::max(name_band, CairoTextWidth(name, g.name_font));
    name_band += 6.0;
  }
  double group_band = 0.0;
  if (g.name_font == 0.0)
    for (const HeatGroup& group : data.groups) group_band = std::max(group_band, CairoTextWidth(group.name, kNameFont));
  g.matrix_left = kMargin + static_cast<int>(std::ceil(std::max(name_band, group_band + 8.0)));
  g.matrix_top = kTitleBand + kGroupBand + static_cast<int>(std::ceil(name_band));
  const int legend_right = g.matrix_left + g.matrix_side + 30 + 2 * (kLegendBar + kLegendGap);
  double caption = CairoTextWidth(kCaption, kNameFont);
  if (data.lower_is_lod) caption = std::max(caption, 16.0 + CairoTextWidth(SwitchedCaption(data.switch_lod), kNameFont));
  const int heading = static_cast<int>(std::ceil(CairoBoldTextWidth(data.title, 14.0)));
  g.width = std::max({legend_right, g.matrix_left + static_cast<int>(std::ceil(caption)), kMargin + heading}) + kMargin;
  g.height = g.matrix_top + std::max(g.matrix_side, kLegendHeight + 30) + 12 + 2 * kLineHeight;
  return g;
}

namespace {

// Mean frequency and mean LOD (or second frequency) of the pairs between two slots.
struct PairMeans {
  double upper = 0.0, lower = 0.0;
  int count = 0;
};

PairMeans MeansBetween(const HeatMapData& data, const HeatSlot& a, const HeatSlot& b) {
  PairMeans m;
  for (int i = a.first_marker; i < a.end_marker; ++i) {
    for (int j = b.first_marker; j < b.end_marker; ++j) {
      if (i == j) continue;
      const float rf = data.pairs.Second(data.markers[i], data.markers[j]);
      const float lower = data.lower_is_lod ? -data.pairs.First(data.markers[i], data.markers[j]) : rf;
      if (std::isnan(rf) || std::isnan(lower)) continue;
      m.upper += rf;
      m.lower += lower;
      ++m.count;
    }
  }
  if (m.count > 0) {
    m.upper /= m.count;
    m.lower /= m.count;
  }
  return m;
}

ImageShape Matrix(const HeatMapData& data, const HeatGeometry& g) {
  ImageShape image{static_cast<double>(g.matrix_left), static_cast<double>(g.matrix_top), g.matrix_side, g.matrix_side,
                   {}};
  const auto pack = [](Rgb c) { return (uint32_t{c.r} << 16) | (uint32_t{c.g} << 8) | c.b; };
  image.pixels.assign(static_cast<std::size_t>(g.matrix_side) * g.matrix_side, pack(kBoundary));
  const auto fill = [&](int x, int y, int w, int h, Rgb c) {
    for (int row = y; row < y + h; ++row)
      std::fill_n(image.pixels.begin() + static_cast<std::ptrdiff_t>(row) * g.matrix_side + x, w, pack(c));
  };
  const auto strength_lower = [&](double v) { return data.lower_is_lod ? LodStrength(v) : RfStrength(v); };
  for (std::size_t r = 0; r < g.slots.size(); ++r) {
    const HeatSlot& row = g.slots[r];
    fill(row.first_pixel, row.first_pixel, row.num_pixels, row.num_pixels, kDiagonal);
    for (std::size_t c = r + 1; c < g.slots.size(); ++c) {
      const HeatSlot& col = g.slots[c];
      const PairMeans m = MeansBetween(data, row, col);
      Rgb upper = m.count > 0 ? LinkageColour(RfStrength(m.upper)) : kNoValue;
      Rgb lower = m.count > 0 ? LinkageColour(strength_lower(m.lower)) : kNoValue;
      if (m.count > 0 && data.lower_is_lod && m.upper > 0.5 && m.lower >= data.switch_lod)
        upper = lower = kSwitchedColour;
      fill(col.first_pixel, row.first_pixel, col.num_pixels, row.num_pixels, upper);
      fill(row.first_pixel, col.first_pixel, row.num_pixels, col.num_pixels, lower);
    }
  }
  return image;
}

// A colour bar from the tightest linkage at the top to none at the bottom, with its end values.
void DrawLegendBar(Drawing& d, int x, int y, const char* heading, const std::string& top, const std::string& bottom) {
  ImageShape bar{static_cast<double>(x), static_cast<double>(y), kLegendBar, kLegendHeight, {}};
  for (int k = 0; k < kLegendHeight; ++k) {
    const Rgb c = LinkageColour(1.0 - static_cast<double>(k) / (kLegendHeight - 1));
    bar.pixels.insert(bar.pixels.end(), kLegendBar, (uint32_t{c.r} << 16) | (uint32_t{c.g} << 8) | c.b);
  }
  d.Add(std::move(bar));
  d.Add(RectShape{x + 0.5, y + 0.5, kLegendBar - 1.0, kLegendHeight - 1.0, false, {}, 1.0, kInk});
  d.Text(heading, x, y - 8, kNameFont, TextAnchor::kStart, kInk, true);
  d.Text(top, x + kLegendBar + 4, y + 9, kNameFont, TextAnchor::kStart);
  d.Text(bottom, x + kLegendBar + 4, y + kLegendHeight, kNameFont, TextAnchor::kStart);
}

// Group names on top and on the left, where the group is wide enough to hold them; on the left
// only when the markers' names are not there.
void DrawGroupNames(Drawing& d, const HeatMapData& data, const HeatGeometry& g) {
  const double top = g.matrix_top - (g.name_font > 0 ? g.matrix_top - kTitleBand - kGroupBand : 0) - 6;
  double last_right = -1e9;
  for (std::size_t k = 0; k < data.groups.size(); ++k) {
    const int lo = g.group_first_pixel[k], hi = g.group_end_pixel[k];
    if (hi <= lo) continue;
    const double centre = 0.5 * (lo + hi);
    const double w = CairoTextWidth(data.groups[k].name, kNameFont);
    if (centre - 0.5 * w > last_right + 4) {
      d.Text(data.groups[k].name, g.matrix_left + centre, top, kNameFont, TextAnchor::kMiddle);
      last_right = centre + 0.5 * w;
    }
  }
  if (g.name_font > 0) return;
  double last_bottom = -1e9;
  for (std::size_t k = 0; k < data.groups.size(); ++k) {
    const int lo = g.group_first_pixel[k], hi = g.group_end_pixel[k];
    if (hi <= lo) continue;
    const double centre = 0.5 * (lo + hi);
    if (centre - kNameFont > last_bottom) {
      d.Text(data.groups[k].name, g.matrix_left - 6, g.matrix_top + centre + 0.35 * kNameFont, kNameFont, TextAnchor::kEnd);
      last_bottom = centre;
    }
  }
}

void DrawMarkerNames(Drawing& d, const HeatMapData& data, const HeatGeometry& g) {
  if (g.name_font <= 0) return;
  for (const HeatSlot& s : g.slots) {
    const std::string& name = data.names[s.first_marker];
    const double middle = s.first_pixel + 0.5 * s.num_pixels + 0.35 * g.name_font;
    d.Text(name, g.matrix_left - 4, g.matrix_top + middle, g.name_font, TextAnchor::kEnd);
    d.Add(TextShape{name, g.matrix_left + middle, g.matrix_top - 4.0, g.name_font, false,
                                 TextAnchor::kStart, kInk, true});
  }
}

}  // namespace

Drawing DrawHeatMap(const HeatMapData& data, const HeatGeometry& g) {
  Drawing d;
  d.width = g.width;
  d.height = g.height;
  d.Add(Matrix(data, g));
  d.Text(data.title, kMargin, 26, 14.0, TextAnchor::kStart, kInk, true);
  DrawGroupNames(d, data, g);
  DrawMarkerNames(d, data, g);
  const int legend_x = g.matrix_left + g.matrix_side + 30, legend_y = g.matrix_top + 14;
  DrawLegendBar(d, legend_x, legend_y, "RF", "0", "0.5");
  if (data.lower_is_lod)
    DrawLegendBar(d, legend_x + kLegendBar + kLegendGap, legend_y, "LOD", "\xE2\x89\xA5" + FormatNumber(kLodCap), "0");
  const double caption_y = g.height - 2 * kLineHeight;
  d.Text(data.lower_is_lod ? kCaption : kConsensusCaption, g.matrix_left, caption_y, kNameFont, TextAnchor::kStart);
  if (data.lower_is_lod) {
    d.Add(RectShape{static_cast<double>(g.matrix_left), caption_y + kLineHeight - 9, 10, 10, true,
                                 ToColour(kSwitchedColour), 0.0, {}});
    d.Text(SwitchedCaption(data.switch_lod), g.matrix_left + 16, caption_y + kLineHeight, kNameFont, TextAnchor::kStart);
  }
  return d;
}

}  // namespace gaecli
