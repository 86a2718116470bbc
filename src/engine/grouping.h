// Dividing the markers into linkage groups from their pair values. Marker arrays are 0-based
// (entry i-1 for marker i) and hold 1-based group numbers.
#pragma once

#include <cstdint>
#include <vector>

#include "twopoint/pair_table.h"

namespace gae {

// The value of markers i and j (1-based) that grouping minimises: the stored first value
// (minus the LOD), the recombination frequency, or the map distance.
inline float PairValue(const PairTable& table, int by_what, int32_t i, int32_t j) {
  return table.Value(by_what, i, j);
}

// A frequency cap on linkage: a pair links only if its recombination frequency lies below the
// cap as well as its value below the threshold. In a few hundred F2 plants, chance pairs that
// clear LOD 3 between chromosomes come with frequencies well above 1/2 (the likelihood peaks
// on the far side), and one such pair merges two chromosomes into one group. A capped pair
// holds no value: it never links, folds in or seeds a group. This cap is never reached.
inline constexpr float kNoFrequencyCap = 2.0f;

// Markers closer than this in recombination frequency are folded into a group whatever the
// criterion, before single-linkage growth.
inline constexpr float kFoldInFrequency = 0.01f;

// The anchors with each positive number replaced by its rank among the positive numbers in
// use (0 and negatives stay). Only the order of anchor numbers means anything: the methods
// below work on ranks, so neither their result nor their time and memory depend on how large
// the numbers are (an anchor of 2147483647 once overflowed the next group number, and one of
// 20,000 on two markers made 20,000 clusters). Group numbers that come out are ranks too.
std::vector<int32_t> AnchorRanks(int32_t n, const int32_t* anchor);

// Single linkage by threshold. Anchored markers start their groups; with no anchor the closest
// pair starts group 1 (or, when no pair lies strictly below the threshold, every marker is a
// group of its own). Near-identical markers are folded in, then the free marker closest to any
// grouped marker joins that marker's group if its value is strictly below the threshold, or
// opens a new group. Ties go to the lowest free marker, then the lowest group, then the lowest
// member; values that are not numbers never count. Pairs are capped at `max_rf`.
void GroupByThreshold(const PairTable& table, int by_what, int32_t n, float threshold,
                      const int32_t* anchor, int32_t* group, float max_rf = kNoFrequencyCap);

// Average linkage down to `count` groups (at least the number of anchor groups, at most n). Anchored
// markers start in their anchor's cluster, every other marker alone; the two clusters with the
// smallest mean pair value merge until the count is reached. The mean is the 32-bit sum over
// the members of the higher-numbered cluster (outer) and the lower (inner), ascending, divided
// by the product of the sizes; the first smallest in the order of cluster pairs wins.
void GroupToCount(const PairTable& table, int by_what, int32_t n, int32_t count,
                  const int32_t* anchor, int32_t* group);

// Groups by anchors alone, the anchor numbers closed up; markers without an anchor stay
// unlinked (0).
void GroupByAnchors(int32_t n, const int32_t* anchor, int32_t* group);

}  // namespace gae
