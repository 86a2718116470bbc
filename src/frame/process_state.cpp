#include "frame/process_state.h"

#include "frame/store_bus_guard.h"

namespace gae {

PairStoreSettings WatchedStore() {
  PairStoreSettings settings;
  settings.watch = &StoreBusGuard();
  return settings;
}

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
  state.pair_store = WatchedStore();
  state.random = UniformStream{};
  state.map = MapModel{};
  state.missing_word_seen = false;
}

}  // namespace gae
