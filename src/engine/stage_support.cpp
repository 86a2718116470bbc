#include "engine/stage_support.h"

#include "frame/messages.h"
#include "frame/process_state.h"

namespace gae {

bool OpenStageStore(PairStoreFile& store, int* status) {
  if (OpenProcessPairStore(store)) return true;
  MessageCode() = 1002;
  PrintMessage(1002, {MsgArg::Field(Process().pair_store.lrd_name)});
  if (status != nullptr) *status = 1002;
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
  MessageCode() = 1103;
  PrintFrameMessage("", t1, t2, 0);
}

}  // namespace gae
