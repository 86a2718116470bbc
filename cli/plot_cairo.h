// Small helpers over cairo's text calls shared by the two pictures.
#pragma once

#include <cairo.h>

#include <string>

namespace gaecli {

enum class TextAlign { kLeft, kCentre, kRight };

void SetFont(cairo_t* cr, double size, bool bold);
// Draws `text` with its baseline at `y`, aligned on `x`.
void ShowText(cairo_t* cr, const std::string& text, double x, double y, TextAlign align);
// The advance of `text` in the sans-serif face at `font_size`.
double CairoTextWidth(const std::string& text, double font_size);
// The same in the bold face that titles are set in.
double CairoBoldTextWidth(const std::string& text, double font_size);
// Releases a finished picture's surface and turns cairo's status of writing it into the
// command's error text ("path: reason"); true when the file was written.
bool ReleaseSurface(cairo_surface_t* surface, cairo_status_t status, const std::string& path, std::string& error);
// A scale number: no decimals when it is whole, else up to two.
std::string FormatNumber(double value);

}  // namespace gaecli
