// `MessageCode`: the one process-wide integer that selects a catalogue text and signals
// failure, 0 meaning nothing wrong. A reader stores its code, prints its line and returns; the
// caller tests the code after each step.
#pragma once

#include <cstdint>

namespace gae {

// Owned by the process state, like the run log; every layer reads and sets it through here.
int32_t& MessageCode();

}  // namespace gae
