// The one grouping rule of the command and the map pipeline, for every map tool alike: two
// markers are linked when their pair's LOD lies above a threshold and its recombination
// frequency below a cap, and groups grow by single linkage as grouping by threshold grows them
// (the LOD tree reads the pair file the same way, so its rows and the groups agree). The threshold is the LOD tree's
// automatic choice unless one is fixed, and the cap keeps out the pairs whose likelihood peaks
// on the far side of 1/2. The pairs come from any pair file whose first word is minus a LOD
// (bi-parental, clonal and pure-line records alike).
#pragma once

#include <cstdint>
#include <vector>

#include "engine/auto_lod.h"
#include "engine/lod_tree.h"
#include "twopoint/pair_table.h"

namespace gae {

struct LinkageRule {
  float min_lod = 3.0f;  // a pair links when its LOD lies above this
  float max_rf = 0.5f;   // ... and its frequency below this
};

inline constexpr float kDefaultMaxRf = 0.5f;

// The rows of the LOD tree from `low` to `high` by `step`, pairs capped at `max_rf`.
std::vector<LodTreeRow> LinkageTree(const PairTable& table, int32_t n, float max_rf, float low,
                                    float high, float step);

// The threshold of a run: `fixed_lod` when it is a number, otherwise the automatic choice on
// the default range (3 when the tree shows no usable plateau).
LinkageRule ResolveLinkageRule(const PairTable& table, int32_t n, float fixed_lod, float max_rf,
                               AutoLod* choice = nullptr);

// The group (1-based) of every marker, by grouping by threshold on the capped pairs; `anchors`
// (null for none) start their groups as in grouping by threshold.
std::vector<int32_t> LinkageGroups(const PairTable& table, int32_t n, const LinkageRule& rule,
                                   const int32_t* anchors = nullptr);

}  // namespace gae
