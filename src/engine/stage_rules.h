// What the grouping, ordering and rippling stages need to know about the tool whose map they
// build. The frame derives it from the tool's profile; the engine never looks at tool codes.
#pragma once

namespace gae {

struct StageRules {
  // The pair store holds distances taken from existing maps rather than two-point estimates,
  // and the anchors hold how many input maps carry each marker. Only distances (ByWhat 3) make
  // sense then: grouping method 1 keeps every marker together, method 2 cuts by distance,
  // ordering has its own two methods and the rippling window is not bounded to 2..8.
  bool consensus = false;
};

}  // namespace gae
