#include "engine/auto_lod.h"

#include <algorithm>
#include <cstdio>

namespace gae {

namespace {

// "6" or "6.5": thresholds in the words of a summary.
std::string Number(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
  return text;
}

}  // namespace

std::string LodText(float lod) {
  char text[32];
  std::snprintf(text, sizeof text, "LOD %.1f", static_cast<double>(lod));
  return text;
}

int FewMarkers(int num_markers) { return std::max(3, num_markers / 100); }

AutoLod ChooseLod(const std::vector<LodTreeRow>& rows, int num_markers) {
  AutoLod choice;
  const LodPlateau plateau = LongestPlateau(rows, FewMarkers(num_markers));
  if (plateau.first < 0) return choice;
  choice.found = true;
  choice.threshold = rows[static_cast<size_t>(plateau.first)].threshold;
  choice.run_to = rows[static_cast<size_t>(plateau.last)].threshold;
  choice.groups = plateau.groups;
  choice.reason = LodText(choice.threshold) + ": the groups stay the same from " + Number(choice.threshold) + " to " +
                  Number(choice.run_to) + " (" + std::to_string(choice.groups) +
                  (choice.groups == 1 ? " group" : " groups") + " of at least " +
                  std::to_string(FewMarkers(num_markers)) + " markers)";
  return choice;
}

}  // namespace gae
