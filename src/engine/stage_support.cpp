#include "engine/stage_support.h"

#include "engine/map_state.h"
#include "vocabulary/frame_codes.h"
#include "vocabulary/message_code.h"
#include "vocabulary/messages.h"

namespace gae {

bool OpenStageStore(PairStoreFile& store, const PairStoreSettings& settings, int* status) {
  if (OpenPairStore(store, settings)) return true;
  MessageCode() = kMissingFile;
  PrintMessage(kMissingFile, {MsgArg::Field(settings.lrd_name)});
  if (status != nullptr) *status = kMissingFile;
  return false;
}

void RejectOption(int code, int value, int* status) {
  MessageCode() = code;
  if (status != nullptr) *status = code;
  PrintFrameMessage("", 0.0f, 0.0f, value);
}

void PrintStageLine(int code, int value) {
  MessageCode() = code;
  PrintFrameMessage("", 0.0f, 0.0f, value);
}

void PrintStageTime(float t1, float t2) {
  MessageCode() = kCpuTime;
  PrintFrameMessage("", t1, t2, 0);
}

GroupSlices::GroupSlices(int num_markers, int num_groups, const int* group_size)
    : num_markers_(num_markers), group_size_(group_size), starts_(GroupStarts(num_groups, group_size)) {}

bool GroupSlices::Fits(int g) const {
  const int64_t at = starts_[static_cast<std::size_t>(g)];
  return at >= 0 && at + group_size_[g] <= num_markers_;
}

bool AllGroupsAt(int num_groups, const int* group_status, int status) {
  for (int g = 0; g < num_groups; ++g)
    if (group_status[g] != status) return false;
  return true;
}

}  // namespace gae
