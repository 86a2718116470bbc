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
#include <functional>
#include <limits>
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

// What the LOD tree keeps of the pairs, from one streaming pass over them: a spanning forest
// of the pairs whose LOD lies above the lowest threshold, strongest first (at every threshold
// the forest's pairs above it connect exactly the markers that all pairs above it connect),
// the strongest pair of all and the markers folded into its group. A pair whose frequency is
// not below `max_rf` holds no value: it never links, folds in or seeds a group.
struct LodForestEdge {
  float value;  // minus the LOD, as stored
  int32_t i, j;
};
struct LodForest {
  int32_t n = 0;
  float loosest = 0.0f;  // minus the lowest threshold the forest serves
  std::vector<LodForestEdge> edges;
  float best = std::numeric_limits<float>::infinity();
  std::vector<int32_t> seed;  // the strongest pair's markers and those folded into them
  int64_t capped = 0;         // pairs that lost their value to the cap
};

// `held_pairs` sets how many pairs gather before a pruning (0: a few million; never fewer than
// n), so memory does not grow with the number of pairs. `passed`, when given, hears now and
// then how many records (in store order) the pass has read.
LodForest BuildLodForest(const PairTable& table, int32_t n, float lowest_threshold, float max_rf,
                         std::size_t held_pairs = 0, const std::function<void(int64_t)>& passed = {});

// One row for each threshold, in the order given; thresholds below the forest's lowest see only
// the pairs it holds.
std::vector<LodTreeRow> LodTreeRows(const LodForest& forest, const std::vector<float>& thresholds,
                                    bool keep_groups = false);

// The groups at `threshold` (1-based, numbered in the order of their lowest marker): the
// partition grouping by threshold makes on the pairs the forest came from.
std::vector<int32_t> ForestGroups(const LodForest& forest, float threshold);

// The forest and its rows in one call, pairs capped at `max_rf`.
std::vector<LodTreeRow> LodTree(const PairTable& table, int32_t n, const std::vector<float>& thresholds,
                                bool keep_groups = false, std::size_t held_pairs = 0, float max_rf = 2.0f);

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
