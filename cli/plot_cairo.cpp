#include "plot_cairo.h"

#include <cairo-pdf.h>

#include <cmath>
#include <cstdio>

#include "report/text_file.h"

namespace gaecli {

namespace {

constexpr const char* kFace = "sans-serif";

void SetFont(cairo_t* cr, double size, bool bold) {
  cairo_select_font_face(cr, kFace, CAIRO_FONT_SLANT_NORMAL, bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, size);
}

double MeasureText(const std::string& text, double font_size, bool bold) {
  // One scratch context for every measure of the run.
  static cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
  static cairo_t* cr = cairo_create(surface);
  SetFont(cr, font_size, bold);
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  return extents.x_advance;
}

void SetColour(cairo_t* cr, Colour c) { cairo_set_source_rgb(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0); }

// A cairo image of the shape's pixels; the caller destroys it.
cairo_surface_t* SurfaceOf(const ImageShape& s) {
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, s.width, s.height);
  cairo_surface_flush(image);
  unsigned char* data = cairo_image_surface_get_data(image);
  const int stride = cairo_image_surface_get_stride(image);
  for (int row = 0; row < s.height; ++row) {
    auto* line = reinterpret_cast<uint32_t*>(data + static_cast<std::ptrdiff_t>(row) * stride);
    for (int x = 0; x < s.width; ++x) line[x] = s.pixels[static_cast<std::size_t>(row) * s.width + x];
  }
  cairo_surface_mark_dirty(image);
  return image;
}

struct Painter {
  cairo_t* cr;
  void operator()(const PolylineShape& s) const {
    if (s.points.empty()) return;
    SetColour(cr, s.colour);
    cairo_set_line_width(cr, s.width);
    cairo_move_to(cr, s.points[0].x, s.points[0].y);
    for (std::size_t k = 1; k < s.points.size(); ++k) cairo_line_to(cr, s.points[k].x, s.points[k].y);
    cairo_stroke(cr);
  }
  void operator()(const RectShape& s) const {
    cairo_rectangle(cr, s.x, s.y, s.w, s.h);
    if (s.filled) {
      SetColour(cr, s.fill);
      cairo_fill_preserve(cr);
    }
    if (s.stroke_width > 0) {
      SetColour(cr, s.stroke);
      cairo_set_line_width(cr, s.stroke_width);
      cairo_stroke(cr);
    }
    cairo_new_path(cr);
  }
  void operator()(const DotShape& s) const {
    SetColour(cr, s.fill);
    cairo_new_sub_path(cr);
    cairo_arc(cr, s.x, s.y, s.radius, 0.0, 2.0 * M_PI);
    cairo_fill(cr);
  }
  void operator()(const TextShape& s) const {
    if (s.text.empty()) return;
    SetFont(cr, s.size, s.bold);
    SetColour(cr, s.colour);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, s.text.c_str(), &extents);
    double shift = 0.0;
    if (s.anchor == TextAnchor::kMiddle) shift = 0.5 * extents.x_advance;
    if (s.anchor == TextAnchor::kEnd) shift = extents.x_advance;
    cairo_save(cr);
    cairo_translate(cr, s.x, s.y);
    if (s.vertical) cairo_rotate(cr, -0.5 * M_PI);
    cairo_move_to(cr, -shift, 0.0);
    cairo_show_text(cr, s.text.c_str());
    cairo_new_path(cr);
    cairo_restore(cr);
  }
  void operator()(const ImageShape& s) const {
    cairo_surface_t* image = SurfaceOf(s);
    cairo_save(cr);
    cairo_set_source_surface(cr, image, s.x, s.y);
    // Each pixel is a pair of markers: blurring would mix neighbours.
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    cairo_rectangle(cr, s.x, s.y, s.width, s.height);
    cairo_fill(cr);
    cairo_restore(cr);
    cairo_surface_destroy(image);
  }
};

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

bool Fail(const std::string& path, cairo_status_t status, std::string& error) {
  if (status == CAIRO_STATUS_SUCCESS) return true;
  error = path + ": " + cairo_status_to_string(status);
  return false;
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

void PaintDrawing(const Drawing& drawing, cairo_t* cr) {
  cairo_set_source_rgb(cr, 1.0, 1.0, 1.0);
  cairo_paint(cr);
  for (const Shape& shape : drawing.shapes) std::visit(Painter{cr}, shape);
}

std::string PngOfImage(const ImageShape& image) {
  cairo_surface_t* surface = SurfaceOf(image);
  std::string bytes;
  cairo_surface_write_to_png_stream(surface, AppendBytes, &bytes);
  cairo_surface_destroy(surface);
  return bytes;
}

bool WriteDrawing(const Drawing& drawing, PictureFormat format, const std::string& path, std::string& error) {
  // Every picture is made in memory and written whole under another name, then renamed: a link
  // or a pipe at the name is replaced, never followed, and a full disk leaves no half picture.
  std::string bytes;
  cairo_status_t status = CAIRO_STATUS_SUCCESS;
  if (format == PictureFormat::kSvg) {
    bytes = SvgText(drawing);
  } else if (format == PictureFormat::kPdf) {
    // PDF sizes are in points; a CSS pixel is three quarters of one.
    cairo_surface_t* surface =
        cairo_pdf_surface_create_for_stream(AppendBytes, &bytes, 0.75 * drawing.width, 0.75 * drawing.height);
    cairo_t* cr = cairo_create(surface);
    cairo_scale(cr, 0.75, 0.75);
    PaintDrawing(drawing, cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
  } else {
    cairo_surface_t* surface = cairo_image_surface_create(
        CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(drawing.width)), static_cast<int>(std::ceil(drawing.height)));
    cairo_t* cr = cairo_create(surface);
    PaintDrawing(drawing, cr);
    cairo_destroy(cr);
    status = cairo_surface_write_to_png_stream(surface, AppendBytes, &bytes);
    cairo_surface_destroy(surface);
  }
  if (!Fail(path, status, error)) return false;
  if (gae::WriteTextFile(path, bytes)) return true;
  error = path + ": cannot be written";
  return false;
}

}  // namespace gaecli
