// Mapped examples for the editing tests, built from first principles: markers sit at known
// places on chromosomes, the pair records hold the frequencies those places imply, and each
// ordered group carries the cumulative distances of neighbours read back from the records.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "engine/edit_group_model.h"
#include "twopoint/pair_table.h"

namespace gae::testing {

// Where marker i+1 lies: chromosome 0 means no chromosome, linked to nothing.
struct MarkerSpot {
  int chromosome = 0;
  float x = 0.0f;  // cM
};

struct TestMap {
  int32_t mapping_function = 1;
  std::vector<float> records;  // .LRD layout, two words a pair: minus the LOD, the frequency
  std::vector<int32_t> group_size, group_status, group, order;
  std::vector<float> position;
  int32_t num_mapped = 0, num_unlinked = 0, num_deleted = 0;
  PairTable Table() const;
  GroupModelArrays Arrays();  // points into this map's vectors
  void TakeCounts(const GroupModelArrays& model);
  bool operator==(const TestMap&) const = default;
};

// `groups` lists each group's markers in map order; a group whose status is not 1 gets its
// positions from the records, the others 0.
TestMap LayOut(const std::vector<MarkerSpot>& spots, int32_t mapping_function,
               const std::vector<std::vector<int32_t>>& groups,
               const std::vector<int32_t>& statuses, const std::vector<int32_t>& unlinked,
               const std::vector<int32_t>& deleted);

// A few chromosomes of random length and marker count (an empty group now and then), one
// group per chromosome, some unordered, plus unlinked and deleted markers, all numbered in a
// shuffled input order.
TestMap RandomMappedExample(std::mt19937& rng);

// One hand edit as the front end would ask for it, with arguments drawn to hit the edges and
// a little beyond them.
struct EditRequest {
  enum Kind { kMarkerMove, kGroupMove, kGroupReverse } kind = kMarkerMove;
  int32_t a = 0;  // order index, or group
  int32_t b = 0;  // target group, or direction
  int32_t c = 0;  // place mode
};
EditRequest RandomEdit(std::mt19937& rng, const GroupModelArrays& model);

// The layout rules every edit must keep: counts, blocks, `Group` agreeing with the blocks,
// zero positions outside ordered groups, ordered groups starting at 0 and never going back.
::testing::AssertionResult LayoutHolds(const GroupModelArrays& model);
// Each gap of an ordered group equals the stored distance of its two markers.
::testing::AssertionResult GapsMatchTable(const GroupModelArrays& model, const PairTable& table);

}  // namespace gae::testing
