// Everything that lives for the whole process, in one place. Inner routines never reach for
// it: they take what they need as arguments. Only the exported entries and the pipeline
// drivers read and write it, and the front end serialises every call into the library.
#pragma once

#include <cstdint>
#include <string>

#include "engine/map_state.h"
#include "vocabulary/message_code.h"
#include "vocabulary/run_log.h"
#include "vocabulary/uniform_stream.h"
#include "twopoint/pair_store_file.h"

namespace gae {

// No store yet, but the process's watch over the stores it will map.
PairStoreSettings WatchedStore();

struct ProcessState {
  int32_t message_code = 0;   // selects the catalogue text; non-zero after a failure
  RunLog log;
  PairStoreSettings pair_store = WatchedStore();  // the store of the last CheckError, for the stages after it
  UniformStream random;
  MapModel map;               // the working map of the whole-pipeline drivers
  // Set by the first phenotype row that uses a word ("NA", "*", ...) for a missing value;
  // from then on -100 is a number again, for the rest of the process.
  bool missing_word_seen = false;
};

ProcessState& Process();

// Opens the store that the last successful CheckError export of this process wrote or found.
// False when there is none or it cannot be read.
bool OpenProcessPairStore(PairStoreFile& store);

// Brings the process back to the state of a fresh load. Not exported: tests use it.
void ResetProcessStateForTesting();

}  // namespace gae
