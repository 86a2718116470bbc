// Everything that lives for the whole process, in one place. Inner routines never reach for
// it: they take what they need as arguments. Only the exported entries and the pipeline
// drivers read and write it, and the front end serialises every call into the library.
#pragma once

#include <cstdint>
#include <string>

#include "engine/map_state.h"
#include "frame/message_code.h"
#include "frame/run_log.h"
#include "frame/uniform_stream.h"

namespace gae {

// Where the pairwise store of the last successful CheckError lies, and how to read it. The
// stage exports that follow (grouping, ordering, rippling, output) depend on it.
struct PairStoreSettings {
  std::string lrd_name;        // empty until a CheckError export has written or found one
  int32_t record_length = 0;   // in 4-byte words: 2, or 7 for clonal populations
  int32_t mapping_function = 1;  // 1 Kosambi, 2 Haldane, 3 Morgan: how stored frequencies become cM
};

struct ProcessState {
  int32_t message_code = 0;   // selects the catalogue text; non-zero after a failure
  RunLog log;
  PairStoreSettings pair_store;
  UniformStream random;
  MapModel map;               // the working map of the whole-pipeline drivers
  // Set by the first phenotype row that uses a word ("NA", "*", ...) for a missing value;
  // from then on -100 is a number again, for the rest of the process.
  bool missing_word_seen = false;
};

ProcessState& Process();

// Brings the process back to the state of a fresh load. Not exported: tests use it.
void ResetProcessStateForTesting();

}  // namespace gae
