// The LOD threshold a run takes when the user names none: the lowest threshold of the longest
// run of LOD-tree rows over which the groups stay the same.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/lod_tree.h"

namespace gae {

// A group counts towards a plateau when it holds at least this many markers: 1% of them, and
// never fewer than 3, so that stray markers breaking off at high thresholds do not count.
int FewMarkers(int num_markers);

// The lowest threshold of the longest run of rows over which the count of groups of at least
// FewMarkers markers stays the same (the lower run on a tie).
struct AutoLod {
  bool found = false;
  float threshold = 0.0f, run_to = 0.0f;
  int groups = 0;
  std::string reason;  // e.g. "LOD 6.0: the groups stay the same from 6 to 15 (5 groups ...)"
  // A plateau without a group of a few markers says nothing of the threshold: a set of markers
  // too small to show one.
  bool Usable() const { return found && groups > 0; }
};
AutoLod ChooseLod(const std::vector<LodTreeRow>& rows, int num_markers);

// A threshold in the words of a summary or a message: "LOD 6.0".
std::string LodText(float lod);

// The thresholds the automatic choice looks at.
inline constexpr float kAutoLodLow = 2.0f, kAutoLodHigh = 15.0f, kAutoLodStep = 1.0f;

}  // namespace gae
