// The process's watch over the pairwise stores it maps: a store truncated in place by another
// program while a map reads it would end the process with SIGBUS (the host with it). The watch
// catches the signal for its own mappings only, so the run fails with a message instead.
#pragma once

#include "twopoint/pair_store_file.h"

namespace gae {

MappingWatch& StoreBusGuard();

}  // namespace gae
