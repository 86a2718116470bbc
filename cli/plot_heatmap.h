// The pairwise heat map: every marker pair of the map in map order, the recombination
// frequency above the diagonal and the LOD score below it, with the linkage groups marked off,
// the markers' names along both axes when the cells are tall enough to hold them, and pairs
// whose alleles look switched in a colour of their own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plot_drawing.h"
#include "twopoint/pair_table.h"

namespace gaecli {

struct HeatGroup {
  std::string name;
  int32_t size = 0;
};

struct HeatMapData {
  std::string title;
  std::vector<int64_t> markers;      // input-file numbers (the pair store's numbering) in map order
  std::vector<std::string> names;    // the same markers' names, for the axes
  std::vector<HeatGroup> groups;     // consecutive runs of `markers`
  gae::PairTable pairs;
  // A consensus store holds a distance, not a LOD, in the first word: the frequency is then
  // shown on both sides.
  bool lower_is_lod = true;
  // A frequency past one half at this LOD or more: the two markers are linked, but one of them
  // has its parents' alleles the other way round.
  double switch_lod = 3.0;
};

// Up to this many markers each pair has its own cell; beyond, the matrix is this many pixels
// wide and each pixel averages the pairs it covers.
inline constexpr int kCellPerPairLimit = 2000;
// LOD scores at or above this have the colour of the tightest linkage.
inline constexpr double kLodCap = 12.0;
// Cells at least this tall carry the markers' names along the axes.
inline constexpr int kNamedCell = 6;

// One run of matrix pixels along either axis that shows the same markers.
struct HeatSlot {
  int32_t first_marker = 0, end_marker = 0;  // map-order indices [first, end)
  int32_t first_pixel = 0, num_pixels = 0;   // from the matrix's left (or top) edge
};

struct HeatGeometry {
  int width = 0, height = 0;
  int matrix_left = 0, matrix_top = 0, matrix_side = 0;
  int cell = 0;                   // pixels per marker, 0 when scaled down
  double name_font = 0.0;         // size of the markers' names on the axes; 0 when they are left out
  std::vector<HeatSlot> slots;    // in order; a group boundary is a gap between two slots
  std::vector<int> group_first_pixel, group_end_pixel;  // per group (empty groups span nothing)
};

HeatGeometry LayOutHeatMap(const HeatMapData& data);

struct Rgb {
  uint8_t r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};
// From blue for no linkage (0) through pale yellow to dark red for the tightest (1).
Rgb LinkageColour(double strength);
// Cells of pairs whose alleles look switched: a green outside the blue-to-red scale.
inline constexpr Rgb kSwitchedColour{0, 158, 72};

Drawing DrawHeatMap(const HeatMapData& data, const HeatGeometry& geometry);

}  // namespace gaecli
