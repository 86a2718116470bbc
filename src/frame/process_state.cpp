#include "frame/process_state.h"

namespace gae {

ProcessState& Process() {
  static ProcessState state;
  return state;
}

bool OpenProcessPairStore(PairStoreFile& store) {
  return OpenPairStore(store, Process().pair_store);
}

int32_t& MessageCode() { return Process().message_code; }

RunLog& ProcessRunLog() { return Process().log; }

void ResetProcessStateForTesting() {
  ProcessState& state = Process();
  while (state.log.IsConnected()) state.log.Close();
  state.message_code = 0;
  state.pair_store = PairStoreSettings{};
  state.random = UniformStream{};
  state.map = MapModel{};
  state.missing_word_seen = false;
}

}  // namespace gae
