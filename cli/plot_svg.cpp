#include <charconv>
#include <cstdio>
#include <fstream>

#include "plot_drawing.h"

namespace gaecli {

namespace {

// Two decimals are a hundredth of a pixel: finer than any screen or print. to_chars never
// consults the host's locale.
std::string Num(double value) {
  char buffer[32];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 2);
  std::string text(buffer, result.ptr);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string Hex(Colour c) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", c.r, c.g, c.b);
  return buffer;
}

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default:
        // Control characters have no place in XML text.
        if (static_cast<unsigned char>(c) >= 0x20 || c == '\t') out += c;
    }
  }
  return out;
}

const char* AnchorWord(TextAnchor a) {
  return a == TextAnchor::kStart ? "start" : a == TextAnchor::kMiddle ? "middle" : "end";
}

std::string Base64(const std::string& bytes) {
  static const char* kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    uint32_t v = static_cast<uint8_t>(bytes[i]) << 16;
    if (i + 1 < bytes.size()) v |= static_cast<uint8_t>(bytes[i + 1]) << 8;
    if (i + 2 < bytes.size()) v |= static_cast<uint8_t>(bytes[i + 2]);
    out += kDigits[(v >> 18) & 63];
    out += kDigits[(v >> 12) & 63];
    out += i + 1 < bytes.size() ? kDigits[(v >> 6) & 63] : '=';
    out += i + 2 < bytes.size() ? kDigits[v & 63] : '=';
  }
  return out;
}

// Runs of lines of one style share one path, and runs of text of one style one group: a dense
// chart stays small.
class SvgWriter {
 public:
  void Add(const PolylineShape& s) {
    const std::string style = "fill=\"none\" stroke=\"" + Hex(s.colour) + "\" stroke-width=\"" + Num(s.width) + "\"";
    if (style != path_style_) {
      Close();
      path_style_ = style;
      out_ += "<path " + style + " d=\"";
    }
    for (std::size_t k = 0; k < s.points.size(); ++k)
      out_.append(k == 0 ? "M" : "L").append(Num(s.points[k].x)).append(" ").append(Num(s.points[k].y));
  }
  void Add(const RectShape& s) {
    Close();
    out_ += "<rect x=\"" + Num(s.x) + "\" y=\"" + Num(s.y) + "\" width=\"" + Num(s.w) + "\" height=\"" + Num(s.h) +
            "\" fill=\"" + (s.filled ? Hex(s.fill) : "none") + "\"";
    if (s.stroke_width > 0) out_ += " stroke=\"" + Hex(s.stroke) + "\" stroke-width=\"" + Num(s.stroke_width) + "\"";
    out_ += "/>\n";
  }
  void Add(const DotShape& s) {
    Close();
    out_ += "<circle cx=\"" + Num(s.x) + "\" cy=\"" + Num(s.y) + "\" r=\"" + Num(s.radius) + "\" fill=\"" +
            Hex(s.fill) + "\"/>\n";
  }
  void Add(const TextShape& s) {
    const std::string style = "font-size=\"" + Num(s.size) + "\" fill=\"" + Hex(s.colour) + "\" text-anchor=\"" +
                              AnchorWord(s.anchor) + "\"" + (s.bold ? " font-weight=\"bold\"" : "");
    if (style != text_style_) {
      Close();
      text_style_ = style;
      out_ += "<g " + style + ">\n";
    }
    out_ += "<text x=\"" + Num(s.x) + "\" y=\"" + Num(s.y) + "\"";
    if (s.vertical) out_ += " transform=\"rotate(-90 " + Num(s.x) + " " + Num(s.y) + ")\"";
    out_.append(">").append(Escaped(s.text)).append("</text>\n");
  }
  void Add(const ImageShape& s) {
    Close();
    out_ += "<image x=\"" + Num(s.x) + "\" y=\"" + Num(s.y) + "\" width=\"" + std::to_string(s.width) +
            "\" height=\"" + std::to_string(s.height) +
            "\" style=\"image-rendering:pixelated\" href=\"data:image/png;base64," + Base64(PngOfImage(s)) + "\"/>\n";
  }
  std::string Finish() {
    Close();
    return std::move(out_);
  }
  explicit SvgWriter(const Drawing& d) {
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
           Num(d.width) + "\" height=\"" + Num(d.height) + "\" viewBox=\"0 0 " + Num(d.width) + " " + Num(d.height) +
           "\" font-family=\"" + kFontFamily + "\">\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
  }

 private:
  void Close() {
    if (!path_style_.empty()) out_ += "\"/>\n";
    if (!text_style_.empty()) out_ += "</g>\n";
    path_style_.clear();
    text_style_.clear();
  }
  std::string out_, path_style_, text_style_;
};

}  // namespace

std::string SvgText(const Drawing& drawing) {
  SvgWriter writer(drawing);
  for (const Shape& shape : drawing.shapes) std::visit([&](const auto& s) { writer.Add(s); }, shape);
  return writer.Finish() + "</svg>\n";
}

const char* ExtensionOf(PictureFormat format) {
  return format == PictureFormat::kSvg ? "svg" : format == PictureFormat::kPdf ? "pdf" : "png";
}

}  // namespace gaecli
