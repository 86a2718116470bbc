#include "plot_cairo.h"

#include <cmath>
#include <cstdio>

namespace gaecli {

namespace {
constexpr const char* kFace = "sans-serif";
}

void SetFont(cairo_t* cr, double size, bool bold) {
  cairo_select_font_face(cr, kFace, CAIRO_FONT_SLANT_NORMAL, bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, size);
}

void ShowText(cairo_t* cr, const std::string& text, double x, double y, TextAlign align) {
  if (text.empty()) return;
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  if (align == TextAlign::kRight) x -= extents.x_advance;
  if (align == TextAlign::kCentre) x -= 0.5 * extents.x_advance;
  cairo_move_to(cr, x, y);
  cairo_show_text(cr, text.c_str());
  cairo_new_path(cr);
}

namespace {

double MeasureText(const std::string& text, double font_size, bool bold) {
  // One scratch context for every measure of the run.
  static cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  static cairo_t* cr = cairo_create(surface);
  SetFont(cr, font_size, bold);
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  return extents.x_advance;
}

}  // namespace

double CairoTextWidth(const std::string& text, double font_size) { return MeasureText(text, font_size, false); }

double CairoBoldTextWidth(const std::string& text, double font_size) { return MeasureText(text, font_size, true); }

std::string FormatNumber(double value) {
  char text[32];
  if (std::fabs(value - std::round(value)) < 1e-9) {
    std::snprintf(text, sizeof text, "%.0f", value);
  } else {
    std::snprintf(text, sizeof text, "%.2g", value);
  }
  return text;
}

bool ReleaseSurface(cairo_surface_t* surface, cairo_status_t status, const std::string& path, std::string& error) {
  cairo_surface_destroy(surface);
  if (status == CAIRO_STATUS_SUCCESS) return true;
  error = path + ": " + cairo_status_to_string(status);
  return false;
}

}  // namespace gaecli
