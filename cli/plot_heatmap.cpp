#include "plot_heatmap.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "plot_cairo.h"

namespace gaecli {

namespace {

constexpr int kMargin = 16;
constexpr int kTitleBand = 40;        // the title line
constexpr int kNameBand = 18;         // group names above the matrix
constexpr int kNameFont = 10;
constexpr int kLegendBar = 16, kLegendGap = 44, kLegendHeight = 240;
constexpr int kCaptionBand = 30;
constexpr int kTargetSide = 1200;     // small maps get big cells, up to 40 pixels
constexpr int kMaxCell = 40;
constexpr const char* kCaption = "Above the diagonal: recombination frequency.  Below: LOD score.";
constexpr const char* kConsensusCaption = "Recombination frequency on both sides of the diagonal.";

constexpr Rgb kStops[] = {{49, 54, 149},   {69, 117, 180}, {171, 217, 233}, {255, 255, 191},
                          {253, 174, 97},  {244, 109, 67}, {165, 0, 38}};
constexpr Rgb kBoundary{255, 255, 255}, kDiagonal{32, 32, 32}, kNoValue{200, 200, 200};

double RfStrength(double rf) { return 1.0 - std::clamp(rf, 0.0, 0.5) / 0.5; }
double LodStrength(double lod) { return std::clamp(lod, 0.0, kLodCap) / kLodCap; }

int LeftBand(const std::vector<HeatGroup>& groups) {
  double longest = 0.0;
  for (const HeatGroup& g : groups) longest = std::max(longest, CairoTextWidth(g.name, kNameFont));
  return kMargin + static_cast<int>(std::ceil(longest)) + 8;
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

HeatGeometry LayOutHeatMap(const std::vector<HeatGroup>& groups, const std::string& title) {
  HeatGeometry g;
  int total = 0, filled = 0;
  for (const HeatGroup& group : groups) {
    total += group.size;
    filled += group.size > 0 ? 1 : 0;
  }
  g.cell = total <= kCellPerPairLimit ? std::clamp(kTargetSide / std::max(total, 1), 1, kMaxCell) : 0;
  const int gap = g.cell >= 6 ? 2 : 1;
  // Scaled down, the pixels left after the boundaries are shared out by group size.
  const double share = g.cell == 0 ? static_cast<double>(kCellPerPairLimit - (filled - 1) * gap) / total : 0.0;
  int pixel = 0, marker = 0;
  bool first = true;
  for (const HeatGroup& group : groups) {
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
  g.matrix_left = LeftBand(groups);
  g.matrix_top = kTitleBand + kNameBand;
  const int legend_right = g.matrix_left + g.matrix_side + 30 + 2 * (kLegendBar + kLegendGap);
  const int caption = static_cast<int>(std::ceil(CairoTextWidth(kCaption, kNameFont)));
  const int heading = static_cast<int>(std::ceil(CairoBoldTextWidth(title, 14.0)));
  g.width = std::max({legend_right, g.matrix_left + caption, kMargin + heading}) + kMargin;
  g.height = g.matrix_top + std::max(g.matrix_side, kLegendHeight + 30) + kCaptionBand;
  return g;
}

namespace {

struct PixelBuffer {
  unsigned char* data;
  int stride;
  void Fill(int x, int y, int w, int h, Rgb c) {
    const uint32_t value = (uint32_t{c.r} << 16) | (uint32_t{c.g} << 8) | c.b;
    for (int row = y; row < y + h; ++row) {
      auto* line = reinterpret_cast<uint32_t*>(data + static_cast<std::ptrdiff_t>(row) * stride);
      std::fill(line + x, line + x + w, value);
    }
  }
};

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

void FillMatrix(const HeatMapData& data, const HeatGeometry& g, PixelBuffer buffer) {
  const int x0 = g.matrix_left, y0 = g.matrix_top;
  buffer.Fill(x0, y0, g.matrix_side, g.matrix_side, kBoundary);
  const auto strength_lower = [&](double v) { return data.lower_is_lod ? LodStrength(v) : RfStrength(v); };
  for (std::size_t r = 0; r < g.slots.size(); ++r) {
    const HeatSlot& row = g.slots[r];
    buffer.Fill(x0 + row.first_pixel, y0 + row.first_pixel, row.num_pixels, row.num_pixels, kDiagonal);
    for (std::size_t c = r + 1; c < g.slots.size(); ++c) {
      const HeatSlot& col = g.slots[c];
      const PairMeans m = MeansBetween(data, row, col);
      const Rgb upper = m.count > 0 ? LinkageColour(RfStrength(m.upper)) : kNoValue;
      const Rgb lower = m.count > 0 ? LinkageColour(strength_lower(m.lower)) : kNoValue;
      buffer.Fill(x0 + col.first_pixel, y0 + row.first_pixel, col.num_pixels, row.num_pixels, upper);
      buffer.Fill(x0 + row.first_pixel, y0 + col.first_pixel, row.num_pixels, col.num_pixels, lower);
    }
  }
}

void SetColour(cairo_t* cr, Rgb c) { cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0); }

// A colour bar from the tightest linkage at the top to none at the bottom, with its end values.
void DrawLegendBar(cairo_t* cr, int x, int y, const char* heading, const std::string& top, const std::string& bottom) {
  for (int k = 0; k < kLegendHeight; ++k) {
    SetColour(cr, LinkageColour(1.0 - static_cast<double>(k) / (kLegendHeight - 1)));
    cairo_rectangle(cr, x, y + k, kLegendBar, 1);
    cairo_fill(cr);
  }
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  cairo_set_line_width(cr, 1.0);
  cairo_rectangle(cr, x + 0.5, y + 0.5, kLegendBar - 1, kLegendHeight - 1);
  cairo_stroke(cr);
  SetFont(cr, kNameFont, true);
  ShowText(cr, heading, x, y - 8, TextAlign::kLeft);
  SetFont(cr, kNameFont, false);
  ShowText(cr, top, x + kLegendBar + 4, y + 9, TextAlign::kLeft);
  ShowText(cr, bottom, x + kLegendBar + 4, y + kLegendHeight, TextAlign::kLeft);
}

// Group names on top and on the left, where the group is wide enough to hold them.
void DrawGroupNames(cairo_t* cr, const HeatMapData& data, const HeatGeometry& g) {
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  SetFont(cr, kNameFont, false);
  double last_right = -1e9;
  for (std::size_t k = 0; k < data.groups.size(); ++k) {
    const int lo = g.group_first_pixel[k], hi = g.group_end_pixel[k];
    if (hi <= lo) continue;
    const double centre = 0.5 * (lo + hi);
    const double w = CairoTextWidth(data.groups[k].name, kNameFont);
    if (centre - 0.5 * w > last_right + 4) {
      ShowText(cr, data.groups[k].name, g.matrix_left + centre, g.matrix_top - 6, TextAlign::kCentre);
      last_right = centre + 0.5 * w;
    }
  }
  double last_bottom = -1e9;
  for (std::size_t k = 0; k < data.groups.size(); ++k) {
    const int lo = g.group_first_pixel[k], hi = g.group_end_pixel[k];
    if (hi <= lo) continue;
    const double centre = 0.5 * (lo + hi);
    if (centre - kNameFont > last_bottom) {
      ShowText(cr, data.groups[k].name, g.matrix_left - 6, g.matrix_top + centre + 0.35 * kNameFont, TextAlign::kRight);
      last_bottom = centre;
    }
  }
}

}  // namespace

bool WriteHeatMapPng(const HeatMapData& data, const std::string& path, std::string& error) {
  const HeatGeometry g = LayOutHeatMap(data.groups, data.title);
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, g.width, g.height);
  cairo_t* cr = cairo_create(surface);
  cairo_set_source_rgb(cr, 1.0, 1.0, 1.0);
  cairo_paint(cr);
  cairo_surface_flush(surface);
  FillMatrix(data, g, {cairo_image_surface_get_data(surface), cairo_image_surface_get_stride(surface)});
  cairo_surface_mark_dirty(surface);

  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  SetFont(cr, 14.0, true);
  ShowText(cr, data.title, kMargin, 26, TextAlign::kLeft);
  DrawGroupNames(cr, data, g);
  const int legend_x = g.matrix_left + g.matrix_side + 30, legend_y = g.matrix_top + 14;
  DrawLegendBar(cr, legend_x, legend_y, "RF", "0", "0.5");
  if (data.lower_is_lod) {
    DrawLegendBar(cr, legend_x + kLegendBar + kLegendGap, legend_y, "LOD", "\xE2\x89\xA5" + FormatNumber(kLodCap), "0");
  }
  cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
  SetFont(cr, kNameFont, false);
  ShowText(cr, data.lower_is_lod ? kCaption : kConsensusCaption, g.matrix_left,
           g.height - kCaptionBand + 20, TextAlign::kLeft);
  cairo_destroy(cr);
  return ReleaseSurface(surface, cairo_surface_write_to_png(surface, path.c_str()), path, error);
}

}  // namespace gaecli
