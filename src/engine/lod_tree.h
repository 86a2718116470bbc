// The LOD tree of a project: how the markers fall into linkage groups at each of a range of
// LOD thresholds, as grouping by threshold (minus the LOD as the value, no anchors) would put
// them.
//
// Single linkage at a threshold is the connected components of the pairs whose LOD lies
// above it, with one addition: grouping starts from the pair of highest LOD and first folds
// into its group the markers nearly identical to it (recombination frequency below 0.01),
// whatever their LOD. That seed and its fold-in are the same at every threshold the seed
// pair clears, so one union-find pass over the pairs in descending LOD gives every row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae {

struct LodTreeRow {
  float threshold = 0.0f;
  int32_t groups = 0;           // every group, one-marker groups included
  int32_t singletons = 0;       // markers that stand alone
  std::vector<int32_t> sizes;   // group sizes, largest first
  std::vector<int32_t> group;   // when asked for: group of marker i at entry i-1, groups
                                // numbered in the order of their lowest marker
};

// One row for each threshold, in the order given. Of the pairs with a LOD above the lowest
// threshold only a spanning forest is held (a few million pairs at most while it is pruned),
// so memory does not grow with the number of pairs. `held_pairs` sets how many pairs gather
// before a pruning (0: the default bound; never fewer than n).
std::vector<LodTreeRow> LodTree(const PairTable& table, int32_t n, const std::vector<float>& thresholds,
                                bool keep_groups = false, std::size_t held_pairs = 0);

// Thresholds from `low` to `high` by `step` (both ends included when the steps land on them).
std::vector<float> LodTreeThresholds(float low, float high, float step);

// The groups with at least `min_size` markers, counted in a row.
int32_t GroupsOfAtLeast(const LodTreeRow& row, int32_t min_size);

// The threshold a run without a user's choice should group at: over the rows (thresholds
// ascending), the longest run of consecutive rows whose count of groups of at least
// `min_size` markers stays the same, the lower run on a tie; its lowest threshold. `first`
// and `last` give the run's rows. No rows: -1.
struct LodPlateau {
  int32_t first = -1, last = -1;
  int32_t groups = 0;
};
LodPlateau LongestPlateau(const std::vector<LodTreeRow>& rows, int32_t min_size);

}  // namespace gae
