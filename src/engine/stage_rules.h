// What the grouping, ordering and rippling stages are given from outside: the rules of the
// tool whose map they build, where the pairs lie, the random stream and where the ordering
// writes its per-start lines. The frame fills it from the tool's profile and the process
// state; the engine never looks at tool codes or process-wide variables.
#pragma once

#include <functional>
#include <string_view>

#include "vocabulary/uniform_stream.h"
#include "twopoint/pair_store_file.h"

namespace gae {

struct StageRules {
  // The pair store holds distances taken from existing maps rather than two-point estimates,
  // and the anchors hold how many input maps carry each marker. Only distances (ByWhat 3) make
  // sense then: grouping method 1 keeps every marker together, method 2 cuts by distance,
  // ordering has its own two methods and the rippling window is not bounded to 2..8.
  bool consensus = false;
};

struct StageContext {
  StageRules rules;
  PairStoreSettings store;
  UniformStream* random = nullptr;  // the restarts of the ordering methods
  // One line for the run log alone (not the screen): the ordering's report of each start.
  std::function<void(std::string_view)> log_only;
};

}  // namespace gae
