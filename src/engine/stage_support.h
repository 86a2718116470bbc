// What the grouping, ordering and rippling entries share: the pairwise store they read, and
// the frame lines they print.
#pragma once

#include <cstdint>
#include <vector>

#include "twopoint/pair_store_file.h"

namespace gae {

// Opens the pairwise store that `settings` name. When there is none (no CheckError ran, or its
// file has gone) the stage cannot work: the 1002 line names the store (empty when there is no
// name), MessageCode and Status become 1002, and the caller returns without changing anything.
bool OpenStageStore(PairStoreFile& store, const PairStoreSettings& settings, int* status);

// A rejected option: MessageCode and Status take `code`, and its line is printed with `value`.
void RejectOption(int code, int value, int* status);
// An informational frame line (1104, 1108, 1109, 1114) with its value, if any.
void PrintStageLine(int code, int value = 0);
// The 1103 line of a stage for CPU readings t1 and t2.
void PrintStageTime(float t1, float t2);

// Where each group's slice of the map order starts (the running sum of the group sizes). A
// slice that would run outside the caller's order array is a caller error; the stages pass
// such a group over rather than read or write out of bounds.
class GroupSlices {
 public:
  GroupSlices(int num_markers, int num_groups, const int* group_size);
  bool Fits(int g) const;  // g 0-based
  std::size_t Start(int g) const { return static_cast<std::size_t>(starts_[static_cast<std::size_t>(g)]); }

 private:
  int num_markers_;
  const int* group_size_;
  std::vector<int64_t> starts_;
};

// Whether every one of the groups has `status`; true when there is no group.
bool AllGroupsAt(int num_groups, const int* group_status, int status);

}  // namespace gae
