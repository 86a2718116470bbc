// A picture as a list of shapes in picture units (CSS pixels): the layouts build it once, and
// each renderer (the SVG writer, cairo for PDF and PNG) only translates it, so the geometry of
// every picture has one home and every format shows the same thing.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace gaecli {

struct Colour {
  uint8_t r = 0, g = 0, b = 0;
  bool operator==(const Colour&) const = default;
};

struct Point {
  double x = 0.0, y = 0.0;
};

// An open line through its points.
struct PolylineShape {
  std::vector<Point> points;
  double width = 1.0;
  Colour colour;
};

struct RectShape {
  double x = 0.0, y = 0.0, w = 0.0, h = 0.0;
  bool filled = true;
  Colour fill;
  double stroke_width = 0.0;  // 0: no outline
  Colour stroke;
};

struct DotShape {
  double x = 0.0, y = 0.0, radius = 1.0;
  Colour fill;
};

enum class TextAnchor { kStart, kMiddle, kEnd };

struct TextShape {
  std::string text;  // UTF-8
  double x = 0.0, y = 0.0;  // the baseline's anchor point
  double size = 10.0;
  bool bold = false;
  TextAnchor anchor = TextAnchor::kStart;
  Colour colour;
  bool vertical = false;  // reads upwards, turned a quarter turn about (x, y)
};

// A raster block (the heat map's matrix), one pixel per picture unit, rows top to bottom,
// each pixel 0x00RRGGBB.
struct ImageShape {
  double x = 0.0, y = 0.0;
  int width = 0, height = 0;
  std::vector<uint32_t> pixels;
};

using Shape = std::variant<PolylineShape, RectShape, DotShape, TextShape, ImageShape>;

struct Drawing {
  double width = 0.0, height = 0.0;
  std::vector<Shape> shapes;

  // Built in place: no shape is moved through the variant.
  template <typename S>
  void Add(S&& shape) {
    shapes.emplace_back(std::in_place_type<std::decay_t<S>>, std::forward<S>(shape));
  }
  void Line(double x1, double y1, double x2, double y2, double width, Colour colour) {
    Add(PolylineShape{{{x1, y1}, {x2, y2}}, width, colour});
  }
  void Text(const std::string& text, double x, double y, double size, TextAnchor anchor, Colour colour = {},
            bool bold = false) {
    Add(TextShape{text, x, y, size, bold, anchor, colour, false});
  }
};

// The font family the pictures name: common faces first, the generic family last.
inline constexpr const char* kFontFamily = "DejaVu Sans, Liberation Sans, Arial, Helvetica, sans-serif";

// The formats a picture can be written in.
enum class PictureFormat { kSvg, kPdf, kPng };
const char* ExtensionOf(PictureFormat format);  // "svg", "pdf", "png"

// The PNG file bytes of an image shape (cairo encodes them), for embedding in SVG.
std::string PngOfImage(const ImageShape& image);

// The SVG text of a drawing: shapes as elements, text as <text> in the named font family.
std::string SvgText(const Drawing& drawing);

// Writes the drawing: SVG as text, PDF and PNG through cairo (the PDF keeps its text as text).
// False with "path: reason" in `error` when the file cannot be written.
bool WriteDrawing(const Drawing& drawing, PictureFormat format, const std::string& path, std::string& error);

}  // namespace gaecli
