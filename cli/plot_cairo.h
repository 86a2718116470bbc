// Text measures for the layouts, and the cairo renderer of a drawing (PDF and PNG).
#pragma once

#include <cairo.h>

#include <string>

#include "plot_drawing.h"

namespace gaecli {

// The advance of `text` in the sans-serif face at `font_size`.
double CairoTextWidth(const std::string& text, double font_size);
// The same in the bold face that titles are set in.
double CairoBoldTextWidth(const std::string& text, double font_size);
// A scale number: no decimals when it is whole, else up to two.
std::string FormatNumber(double value);

// Paints every shape of `drawing` on `cr`, in picture units.
void PaintDrawing(const Drawing& drawing, cairo_t* cr);

}  // namespace gaecli
